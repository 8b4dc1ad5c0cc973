#include "cli/session.h"

#include "platform/ado/drivers.h"

namespace quillan {

Session::Session(const std::filesystem::path& program_folder, const Options& options)
    : options_(options),
      locale_(text::UserLocale::FromEnvironment()),
      database_(files_, program_folder, ado::InstalledDrivers(program_folder)),
      registry_(program_folder, UserConfigurationFolder(), RegistryAccess::kReadOnly),
      settings_(registry_, database_, desktop_, clock_, locale_),
      console_(options.yes) {}

bool Session::Open() {
  if (database_.OpenDatabase()) return true;
  const std::string& reason = database_.LastError();
  Console::PrintError(reason.empty() ? "the connection file names no CONNECTION" : reason);
  return false;
}

}  // namespace quillan
