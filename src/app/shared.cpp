#include "app/shared.h"

#include <utility>

namespace quillan {
namespace {

SharedObjects* shared_objects = nullptr;

}  // namespace

SharedObjects::SharedObjects(const std::filesystem::path& program_folder,
                             ado::DriverFactory open_driver, const Desktop& desktop)
    : locale(text::UserLocale::FromEnvironment()),
      database(files, program_folder, std::move(open_driver)),
      registry(program_folder, UserConfigurationFolder()),
      settings(registry, database, desktop, clock, locale) {
  shared_objects = this;
}

SharedObjects::~SharedObjects() { shared_objects = nullptr; }

Settings& AppSettings() { return shared_objects->settings; }

FlowDatabase& MainDatabase() { return shared_objects->database; }

Files& FileSystem() { return shared_objects->files; }

}  // namespace quillan
