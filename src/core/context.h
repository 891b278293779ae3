#pragma once

#include "core/desktop.h"
#include "core/folders.h"
#include "core/job.h"
#include "core/services.h"
#include "core/settings.h"
#include "core/text.h"

namespace vel {

/// What the windows of one station work with. Everything outlives the windows.
struct Context {
  Desktop& desktop;
  const Folders& folders;
  const Services& services;
  const Encoding& encoding;
  Settings& settings;
  JobRunner& jobs;
};

}  // namespace vel
