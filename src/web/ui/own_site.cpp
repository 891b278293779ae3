#include "web/ui/own_site.h"

namespace vel {
namespace {

constexpr const char* kNoService = "The service velweb can't be started. velwebを起動できません";

}  // namespace

OwnSite::OwnSite(const Context& context, const QString& companion)
    : context_(context), companion_(context.folders, companion) {}

OwnSite::~OwnSite() { endWait(); }

void OwnSite::endWait() {
  if (wait_ == nullptr) return;
  wait_->hide();
  wait_->deleteLater();
  wait_ = nullptr;
}

void OwnSite::requestHomepage(QWidget* asker, const Companion::Ready& ready) {
  endWait();
  if (const std::string& named = context_.services.homepage; !named.empty()) {
    ready(named);
    return;
  }
  wait_ = new ServiceWait(tr("The service velweb is being started.\nvelwebを起動しています。"),
                          asker, [this] { endWait(); });
  companion_.request(
      asker, [this, wait = QPointer<ServiceWait>(wait_), ready](const std::string& address) {
        if (wait == nullptr || wait_ != wait) return;
        endWait();
        if (address.empty()) {
          context_.desktop.showMessage(kNoService);
        } else {
          ready(address);
        }
      });
}

void OwnSite::requestConversion(QObject* context, const Companion::Ready& ready) {
  const std::string& named = context_.services.conversion;
  if (named.empty()) {
    companion_.request(context, ready);
  } else {
    ready(named);
  }
}

}  // namespace vel
