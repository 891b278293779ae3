#include "web/ui/raw_logs.h"

#include "core/file.h"

namespace vel {

RawLogs::RawLogs(const Context& context, OwnSite& site) : context_(context), site_(site) {}

void RawLogs::close() {
  if (viewer_ != nullptr) viewer_->close();
}

void RawLogs::open(const std::string& name) {
  if (viewer_ == nullptr) viewer_ = std::make_unique<RawLogViewer>(context_, site_);
  const std::string fileName = name + ".log";
  if (isSafeFileName(name)) {
    viewer_->showLog(fileIn(context_.folders.eachLogs, fileName));
  } else {
    viewer_->showMissingLog(context_.folders.eachLogs, fileName);
  }
}

void RawLogs::openAt(const std::string& name, std::size_t message) {
  open(name);
  viewer_->goToMessage(message);
}

}  // namespace vel
