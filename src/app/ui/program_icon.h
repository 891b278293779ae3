#pragma once

#include <QIcon>

namespace vel {

/// The program's icon, in every size that title bars and task lists ask for.
[[nodiscard]] QIcon programIcon();

}  // namespace vel
