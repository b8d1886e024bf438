// The quick comparison of names is the plain one.
#include "platform/ado/name_compare.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace pelm::ado {
namespace {

constexpr std::size_t kLongest = 18;  // two steps of eight bytes, and a little

void expect_as_plain(std::string_view a, std::string_view b) {
  EXPECT_EQ(same_name(a, b), text::equal_case_blind(a, b)) << "'" << a << "' and '" << b << "'";
}

// Around the letters, at the ends of the range, and between: "@" and "`" differ as "A" and "a" do.
TEST(SameName, ComparesEachByteAtEachPlaceAsThePlainComparisonDoes) {
  constexpr std::string_view kBytes("\0\x01 !09:@AMZ[_`amz{\x7F\x80\xA1\xC3\xE1\xFF", 24);
  for (std::size_t size = 1; size <= kLongest; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      for (const char x : kBytes) {
        for (const char y : kBytes) {
          std::string a(size, 'n');
          std::string b(size, 'N');
          a[place] = x;
          b[place] = y;
          expect_as_plain(a, b);
        }
      }
    }
  }
}

TEST(SameName, TellsNamesApartByLengthByBytesAndByLetters) {
  const std::vector<std::string> names = {"",
                                          "o",
                                          "oid",
                                          "OID",
                                          "cid",
                                          "nome",
                                          "NOME",
                                          "nom",
                                          "nome ",
                                          "rescopo",
                                          "RESCOPO",
                                          "descrição",
                                          "DESCRIÇÃO",
                                          "Descrição",
                                          "açao",
                                          "atualizadoem",
                                          "ATUALIZADOEM",
                                          "rListadeObjetos",
                                          "RLISTADEOBJETOS",
                                          "rlistadeobjeto_"};
  for (const std::string& a : names) {
    for (const std::string& b : names) expect_as_plain(a, b);
  }
  EXPECT_TRUE(same_name("descrição", "DESCRIÇÃO"));
  EXPECT_TRUE(same_name("", ""));
  EXPECT_FALSE(same_name("valor@", "valor`"));
}

}  // namespace
}  // namespace pelm::ado
