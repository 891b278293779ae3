#pragma once

#include <QObject>
#include <QPointer>
#include <string>

#include "core/context.h"
#include "web/ui/companion.h"
#include "web/ui/service_wait.h"

namespace vel {

/// The system's own web site: the flight page and the KML conversion, each on
/// the host that services.ini names for it, else on the companion service.
class OwnSite : public QObject {
  Q_OBJECT

 public:
  /// The context outlives this object. `companion` is velweb's path.
  explicit OwnSite(const Context& context, const QString& companion);
  ~OwnSite() override;

  /// Calls `ready` with scheme and host of the flight page. Where the
  /// companion service has to come up first, that is once it is there, never
  /// when `asker` is gone or the user has given the wait up by then; a
  /// request that still waits is given up for this one. Where there is no
  /// service, the user is told and `ready` is not called.
  void requestHomepage(QWidget* asker, const Companion::Ready& ready);

  /// Calls `ready` with scheme and host of the KML conversion, empty when
  /// there is none; from the event loop where the companion service has to
  /// answer, and not when `context` is gone by then.
  void requestConversion(QObject* context, const Companion::Ready& ready);

 private:
  void endWait();

  const Context& context_;
  Companion companion_;
  QPointer<ServiceWait> wait_;
};

}  // namespace vel
