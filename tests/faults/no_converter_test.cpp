// A system whose text converter lacks code page 932, or cannot open its part
// for it.

#include <cerrno>
#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <iconv.h>

#include "core/services.h"
#include "core/text.h"

namespace {

int failure = 0;

}  // namespace

extern "C" {
iconv_t __real_iconv_open(const char* to, const char* from);

iconv_t __wrap_iconv_open(const char* to, const char* from) {
  const std::string_view codePage = "CP932";
  if (failure == 0 || (codePage != to && codePage != from)) return __real_iconv_open(to, from);
  errno = failure;
  return reinterpret_cast<iconv_t>(std::intptr_t{-1});
}
}

namespace vel {
namespace {

class NoConverter : public testing::TestWithParam<int> {
 protected:
  void SetUp() override { failure = GetParam(); }
  void TearDown() override { failure = 0; }
};

TEST_P(NoConverter, TheUserIsToldWhatIsMissing) {
  const Result<Encoding> encoding = Services().textEncoding();
  ASSERT_FALSE(encoding.ok());
  EXPECT_EQ(encoding.error().text(),
            "Code page 932 is not available: the system's text converter does not know it, or "
            "cannot open its part for it (iconv's module CP932 on Linux)."
            "　コードページ932が使えません。システムの文字コード変換(Linuxではiconvのモジュール"
            "CP932)が対応していないか、開けません。");
}

TEST_P(NoConverter, AnotherEncodingNeedsNone) {
  Services services;
  services.encoding = "UTF-8";
  EXPECT_TRUE(services.textEncoding().ok());
  services.encoding = "nonsense";
  EXPECT_FALSE(services.textEncoding().ok());
}

INSTANTIATE_TEST_SUITE_P(Unknown, NoConverter, testing::Values(EINVAL));
INSTANTIATE_TEST_SUITE_P(CannotBeOpened, NoConverter, testing::Values(EMFILE, ENOMEM));

}  // namespace
}  // namespace vel
