#pragma once

#include <memory>
#include <string>

#include "core/context.h"
#include "web/ui/raw_log_viewer.h"

namespace vel {

class OwnSite;

/// The one raw log viewer that both browsers use; closed before the settings
/// are saved.
class RawLogs {
 public:
  /// The context and the site outlive this object.
  RawLogs(const Context& context, OwnSite& site);
  RawLogs(const RawLogs&) = delete;
  RawLogs& operator=(const RawLogs&) = delete;

  /// Opens the raw log of that name (the registration, or what stands in
  /// column 3), whatever the letter case of its file. A name that would leave
  /// the folder counts as having none.
  void open(const std::string& name);

  /// The same, and goes to one of its messages, counted from 0 as they are shown.
  void openAt(const std::string& name, std::size_t message);

  /// Closes the viewer, which gives its place to the settings.
  void close();

  /// The viewer, null before the first use.
  [[nodiscard]] RawLogViewer* viewer() const { return viewer_.get(); }

 private:
  const Context& context_;
  OwnSite& site_;
  std::unique_ptr<RawLogViewer> viewer_;
};

}  // namespace vel
