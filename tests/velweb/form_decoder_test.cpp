#include "velweb/form_decoder.h"

#include <gtest/gtest.h>

#include "web/form_encoder.h"

namespace vel {
namespace {

std::string decoded(std::string_view form, std::size_t pieceSize = std::string_view::npos) {
  FormFieldDecoder decoder("dat");
  std::string value;
  while (!form.empty()) {
    const std::string_view piece = form.substr(0, pieceSize);
    value += decoder.decode(piece);
    form.remove_prefix(piece.size());
  }
  value += decoder.finish();
  return decoder.found() ? value : "not found";
}

TEST(FormDecoder, ReadsTheFieldsValue) {
  EXPECT_EQ(decoded("dat=a+b%0D%0A%7e@"), "a b\r\n~@");
  EXPECT_EQ(decoded("dat="), "");
  EXPECT_EQ(decoded("x=1&dat=2&y=3"), "2");
  EXPECT_EQ(decoded("dat=1&dat=2"), "1") << "the first one counts";
  EXPECT_EQ(decoded("dat=a=b"), "a=b");
  EXPECT_EQ(decoded("d%61t=%26%3D"), "&=");
}

TEST(FormDecoder, AFormWithoutTheFieldIsToldFromAnEmptyOne) {
  for (const char* form :
       {"", "dat", "data=1", "da=1", "xdat=1", "DAT=1", "x=dat", "&&&", "%", "=1"}) {
    EXPECT_EQ(decoded(form), "not found") << form;
  }
}

TEST(FormDecoder, BrokenCodesStandForThemselves) {
  EXPECT_EQ(decoded("dat=100%"), "100%");
  EXPECT_EQ(decoded("dat=%4"), "%4");
  EXPECT_EQ(decoded("dat=%zz%4z%%41%+"), "%zz%4z%A% ");
  EXPECT_EQ(decoded("dat=%4&x=1"), "%4");
  EXPECT_EQ(decoded("dat=%&dat=%41"), "%");
}

TEST(FormDecoder, PiecesOfAnySizeGiveTheSameValue) {
  const std::string form = "x=%41&dat=%82%a0+%4%41%%0D&y=2";
  for (std::size_t size = 1; size < form.size(); ++size) {
    EXPECT_EQ(decoded(form, size), decoded(form)) << size;
  }
}

TEST(FormDecoder, UndoesTheEncoderForEveryWellFormedText) {
  std::string bytes;
  for (int i = 0; i < 128; ++i) bytes += static_cast<char>(i);
  for (int lead = 0x81; lead < 0xF0; ++lead) {
    if (lead == 0xA0) lead = 0xE0;
    for (int trail = 0x40; trail < 0xFD; ++trail) {
      bytes += static_cast<char>(lead);
      bytes += static_cast<char>(trail);
    }
  }
  for (int kana = 0xA1; kana < 0xE0; ++kana) bytes += static_cast<char>(kana);
  EXPECT_EQ(decoded("dat=" + encodeForm(bytes)), bytes);
}

}  // namespace
}  // namespace vel
