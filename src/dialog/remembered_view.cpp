#include "dialog/remembered_view.h"

#include <charconv>
#include <vector>

#include "platform/program.h"

namespace quillan {
namespace {

constexpr std::string_view kSection = "Window";
constexpr std::string_view kSize = "Size";
constexpr std::string_view kStrip = "Coverage Strip";

// No screen is wider; larger numbers could overflow what is computed from them.
constexpr int kLongest = 1'000'000;  // Twips.

std::string ColumnsName(std::string_view list) { return std::string(list).append(" Columns"); }

// The numbers of "7735 6475"; empty if the text is anything else.
std::vector<int> ReadNumbers(std::string_view text) {
  std::vector<int> numbers;
  const char* next = text.data();
  const char* const end = next + text.size();
  while (next != end) {
    int number = 0;
    const auto [stop, error] = std::from_chars(next, end, number);
    const bool separated = stop == end || *stop == ' ';
    if (error != std::errc() || !separated || number < 0 || number > kLongest) return {};
    numbers.push_back(number);
    next = stop == end ? end : stop + 1;
  }
  return numbers;
}

}  // namespace

std::string RememberedView::Read(const std::string& name) const {
  return registry_.ReadRegistryString(kDisplayName, kSection, name, RegistryRoot::kCurrentUser)
      .value_or("");
}

std::optional<QSize> RememberedView::WindowSize() const {
  const std::vector<int> numbers = ReadNumbers(Read(std::string(kSize)));
  if (numbers.size() != 2) return std::nullopt;
  return QSize(numbers[0], numbers[1]);
}

void RememberedView::SetWindowSize(QSize size) {
  set_[std::string(kSize)] = std::to_string(size.width()) + " " + std::to_string(size.height());
}

RememberedView::Widths RememberedView::ColumnWidths(std::string_view list) const {
  const std::vector<int> numbers = ReadNumbers(Read(ColumnsName(list)));
  Widths widths;
  for (size_t i = 0; i + 1 < numbers.size(); i += 2) widths[numbers[i]] = numbers[i + 1];
  return widths;
}

void RememberedView::SetColumnWidths(std::string_view list, const Widths& widths) {
  std::string text;
  for (const auto& [column, width] : widths) {
    if (!text.empty()) text += ' ';
    text += std::to_string(column) + " " + std::to_string(width);
  }
  set_[ColumnsName(list)] = text;
}

std::optional<bool> RememberedView::StripShown() const {
  const std::string text = Read(std::string(kStrip));
  if (text.empty()) return std::nullopt;
  return text == "True";
}

void RememberedView::SetStripShown(bool shown) {
  set_[std::string(kStrip)] = shown ? "True" : "False";
}

void RememberedView::Write() {
  for (const auto& [name, text] : set_) {
    if (Read(name) == text) continue;
    registry_.SaveRegistryString(kDisplayName, kSection, name, text, RegistryRoot::kCurrentUser);
  }
  set_.clear();
}

}  // namespace quillan
