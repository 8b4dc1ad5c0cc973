#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ado/value.h"
#include "platform/desktop.h"
#include "platform/message_box.h"

namespace quillan {

/// `text` up to its first NUL character, or all of it when it has none.
std::string_view TrimAtNull(std::string_view text);

/// A duration in words ("1 days, 2 hours"). A unit appears only when more than one of it is left,
/// and always in the plural: one day reads "24 hours", 90 seconds "1 minutes, 30 seconds". Empty
/// for a duration of 0 or less.
std::string DurationText(std::int32_t days, std::int32_t hours, std::int32_t minutes,
                         std::int32_t seconds);

enum class FileExtension { kKeep, kDrop };

/// The file name at the end of a path with either separator, without a drive letter; with kDrop
/// also without its last dot and what follows it.
std::string FileNameFromPath(std::string_view path, FileExtension extension);

/// The whole number 0 for Null; any other value unchanged.
ado::Value NullToZero(const ado::Value& value);

/// Opens a web page in the user's browser; tells the user when there is none or it does not start.
void OpenInBrowser(Desktop& desktop, MessageBox& messages, const std::string& url);

/// The computer's name, by which the collector's row of this computer is found; without spaces and
/// NUL characters at its ends.
std::string LocalComputerName(const Desktop& desktop);

/// Bits per pixel of the screen; 0 when it cannot be read.
int ScreenColorDepth(const Desktop& desktop);

}  // namespace quillan
