#include "platform/qt/x_settings.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <QDataStream>
#include <QGuiApplication>
#include <QIODevice>

namespace quillan {
namespace {

// Of the protocol's values.
constexpr quint8 kInteger = 0;
constexpr quint8 kString = 1;
constexpr quint8 kColor = 2;
constexpr quint32 kLongestProperty = 1 << 16;  // In units of four bytes.

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

template <typename Reply>
ReplyPointer<Reply> Own(Reply* reply) {
  return ReplyPointer<Reply>(reply);
}

// A string and the bytes after it up to a multiple of four.
QByteArray ReadPadded(QDataStream& stream, quint32 length) {
  QByteArray text;
  if (length > static_cast<quint32>(stream.device()->bytesAvailable())) {
    stream.setStatus(QDataStream::ReadPastEnd);
    return text;
  }
  text.resize(static_cast<qsizetype>(length));
  stream.readRawData(text.data(), static_cast<int>(length));
  stream.skipRawData(static_cast<int>((4 - length % 4) % 4));
  return text;
}

}  // namespace

QString ThemeInXSettings(const QByteArray& property) {
  QDataStream stream(property);
  quint8 most_significant_first = 0;
  stream >> most_significant_first;
  stream.setByteOrder(most_significant_first == 0 ? QDataStream::LittleEndian
                                                  : QDataStream::BigEndian);
  quint32 number = 0;
  stream.skipRawData(3);
  stream >> number >> number;  // The serial number, then the number of settings.
  for (; number > 0 && stream.status() == QDataStream::Ok; --number) {
    quint8 type = 0;
    quint8 unused = 0;
    quint16 name_length = 0;
    quint32 serial = 0;
    stream >> type >> unused >> name_length;
    const QByteArray name = ReadPadded(stream, name_length);
    stream >> serial;
    if (type == kString) {
      quint32 length = 0;
      stream >> length;
      const QByteArray text = ReadPadded(stream, length);
      if (name == "Net/ThemeName") return QString::fromUtf8(text);
    } else if (type == kInteger || type == kColor) {
      stream.skipRawData(type == kInteger ? 4 : 8);
    } else {
      break;  // Its length is unknown.
    }
  }
  return {};
}

XSettings::XSettings(std::function<void()> changed) : changed_(std::move(changed)) {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // Qt's platform without a display has the interface, but no connection.
  if (x11 != nullptr) connection_ = x11->connection();
  if (connection_ == nullptr) return;
  property_ = Atom("_XSETTINGS_SETTINGS");
  const auto owner = Own(xcb_get_selection_owner_reply(
      connection_, xcb_get_selection_owner(connection_, Atom("_XSETTINGS_S0")), nullptr));
  if (owner == nullptr || owner->owner == XCB_NONE) return;
  window_ = owner->owner;
  // The events that Qt asks for too, which reads other settings.
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_, window_, XCB_CW_EVENT_MASK, &events);
  qGuiApp->installNativeEventFilter(this);
}

std::uint32_t XSettings::Atom(const char* name) const {
  const auto atom = Own(xcb_intern_atom_reply(
      connection_,
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
      nullptr));
  return atom == nullptr ? XCB_NONE : atom->atom;
}

QString XSettings::Theme() const {
  if (window_ == 0) return {};
  const auto property =
      Own(xcb_get_property_reply(connection_,
                                 xcb_get_property(connection_, 0, window_, property_,
                                                  XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestProperty),
                                 nullptr));
  if (property == nullptr) return {};
  return ThemeInXSettings({static_cast<const char*>(xcb_get_property_value(property.get())),
                           xcb_get_property_value_length(property.get())});
}

bool XSettings::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  if (type != "xcb_generic_event_t") return false;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  constexpr int kSent = 0x80;
  if ((event->response_type & ~kSent) != XCB_PROPERTY_NOTIFY) return false;
  const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
  if (change->window == window_ && change->atom == property_) changed_();
  return false;
}

}  // namespace quillan
