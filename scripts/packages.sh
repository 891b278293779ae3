# The Debian packages that the scripts install; sourced by them.

build_packages=(
  g++ cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools libgl1-mesa-dev cmark-gfm
  libmicrohttpd-dev libcli11-dev libpugixml-dev libjpeg-dev libsqlite3-dev zlib1g-dev
  fonts-ipafont-gothic fonts-ipafont-mincho
)
run_packages=("${build_packages[@]}" xdg-utils)
test_packages=(
  "${build_packages[@]}"
  libgtest-dev libgmock-dev libbenchmark-dev libcpp-httplib-dev
  appstream desktop-file-utils man-db
  libxml2-utils ripgrep mawk xvfb xauth openbox xdotool x11-utils
)
# For Windows programs: what builds them, and what runs them here besides.
windows_packages=(
  "${build_packages[@]}"
  g++-mingw-w64-x86-64-posix dpkg-dev make nasm tcl zip cmark-gfm
)
windows_test_packages=(
  "${windows_packages[@]}" googletest wine wine64 xvfb xdotool unzip fonts-dejavu-core fonts-liberation
)
fuzz_packages=("${build_packages[@]}" clang libclang-rt-dev)
# What builds the Debian package and tries it, beside the build packages.
debian_packages=(
  "${build_packages[@]}"
  cmark-gfm debhelper dpkg-dev fakeroot lintian mmdebstrap
)
# What checks and makes anew what is kept beside the sources: icons and pictures.
picture_packages=(
  "${build_packages[@]}"
  cmark-gfm imagemagick librsvg2-bin xvfb xauth openbox xdotool x11-utils
)
# What looks for mistakes in the sources.
check_packages=("${build_packages[@]}" cppcheck clang-tidy)
