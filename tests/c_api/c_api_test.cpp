// The C interface: objects by number, calls by name, errors, pages, threads.
#include "pelm/pelm_c.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <map>
#include <string>
#include <thread>

namespace {

pelm_value text(const char* t) {
  pelm_value v = PELM_EMPTY_VALUE;
  v.type = PELM_TEXT;
  v.as.text.data = t;
  v.as.text.size = std::strlen(t);
  return v;
}

pelm_value whole(std::int32_t n) {
  pelm_value v = PELM_EMPTY_VALUE;
  v.type = PELM_LONG;
  v.as.integer = n;
  return v;
}

pelm_value absent() {
  pelm_value v = PELM_EMPTY_VALUE;
  v.type = PELM_ABSENT;
  return v;
}

std::string text_of(const pelm_value& v) {
  return v.type == PELM_TEXT ? std::string(v.as.text.data, v.as.text.size) : "(no text)";
}

pelm_error last_error() {
  pelm_error e{};
  pelm_last_error(&e);
  return e;
}

/// An object that is let go at the end of the test.
class Held {
 public:
  explicit Held(const char* id) {
    EXPECT_EQ(pelm_create(id, &object_), 0) << last_error().description;
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() { pelm_release(object_); }
  operator pelm_object() const { return object_; }

 private:
  pelm_object object_ = 0;
};

class CInterface : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(pelm_can_unload(), 1) << "an object was leaked"; }
};

TEST_F(CInterface, TheLibraryIsTheOneOfThisHeader) {
  EXPECT_EQ(pelm_abi_version(), static_cast<std::uint32_t>(PELM_ABI_VERSION));
  EXPECT_NE(std::strchr(pelm_version(), '.'), nullptr);
}

TEST_F(CInterface, CreatesCallsAndReads) {
  const Held main("pelmcomum2008.cmain");
  EXPECT_STREQ(pelm_class_name(main), "CMain");
  pelm_value arg = text("1.5");
  pelm_value result = PELM_EMPTY_VALUE;
  ASSERT_EQ(pelm_call(main, "MYCDBL", &arg, 1, nullptr, &result), 0);
  EXPECT_EQ(result.type, PELM_DOUBLE);
  EXPECT_DOUBLE_EQ(result.as.number, 1.05);

  pelm_value flag = PELM_EMPTY_VALUE;
  flag.type = PELM_BOOLEAN;
  ASSERT_EQ(pelm_put(main, "IsWeb", nullptr, 0, &flag), 0);
  ASSERT_EQ(pelm_get(main, "isweb", nullptr, 0, &result), 0);
  EXPECT_EQ(result.type, PELM_BOOLEAN);
  EXPECT_EQ(result.as.integer, 0);
}

TEST_F(CInterface, ObjectsComeAsReferencesOfTheirOwn) {
  const Held main("PelmComum2008.CMain");
  pelm_value first = PELM_EMPTY_VALUE;
  pelm_value second = PELM_EMPTY_VALUE;
  ASSERT_EQ(pelm_get(main, "CConn", nullptr, 0, &first), 0);
  ASSERT_EQ(pelm_get(main, "CConn", nullptr, 0, &second), 0);
  ASSERT_EQ(first.type, PELM_OBJECT);
  EXPECT_NE(first.as.object, second.as.object);
  EXPECT_EQ(pelm_same_object(first.as.object, second.as.object), 1);
  EXPECT_EQ(pelm_same_object(first.as.object, main), 0);
  pelm_value_clear(&first);
  EXPECT_EQ(first.type, PELM_EMPTY);
  EXPECT_STREQ(pelm_class_name(second.as.object), "Conn");
  pelm_value_clear(&second);
}

TEST_F(CInterface, AFailureTellsNumberSourceAndDescriptionUntilTheNextCall) {
  const Held conn("PelmComum2008.Conn");
  const pelm_value three = whole(3);
  ASSERT_EQ(pelm_put(conn, "Database", nullptr, 0, &three), 1);
  EXPECT_EQ(last_error().number, 1001);
  EXPECT_STREQ(last_error().source, "PelmComum2008.Conn.PropertyDatabase");
  EXPECT_STREQ(last_error().description,
               "Valor da propriedade pode ser apenas 1 para SQLServer e 2 para Oracle");
  const pelm_value two = whole(2);
  ASSERT_EQ(pelm_put(conn, "Database", nullptr, 0, &two), 0);
  EXPECT_EQ(last_error().number, 0);
  EXPECT_STREQ(last_error().source, "");
}

TEST_F(CInterface, ByReferenceArgumentsComeBackMarkedAndTheOldTextIsNotTouched) {
  const Held base("PelmComum2008.Base");
  const std::string code = "00193373700000001000500940144816060680935031";
  std::array<pelm_value, 1> args{text(code.c_str())};
  unsigned char changed = 9;
  pelm_value result = PELM_EMPTY_VALUE;
  ASSERT_EQ(pelm_call(base, "fCalcularDV11_Cobranca", args.data(), 1, &changed, &result), 0);
  EXPECT_EQ(result.as.integer, 1);
  EXPECT_EQ(changed, 1);
  EXPECT_EQ(text_of(args[0]), "0019373700000001000500940144816060680935031");
  EXPECT_EQ(code.size(), 44u);
  pelm_value_clear(args.data());

  args[0] = text("curto");
  ASSERT_EQ(pelm_call(base, "fCalcularDV11_Cobranca", args.data(), 1, &changed, &result), 0);
  EXPECT_EQ(changed, 0);
}

TEST_F(CInterface, ByReferenceArgumentsComeBackAlsoFromAFailure) {
  const Held base("PelmComum2008.Base");
  const std::string code = std::string(43, '1') + "x";
  pelm_value arg = text(code.c_str());
  unsigned char changed = 0;
  EXPECT_EQ(pelm_call(base, "fCalcularDV11_Cobranca", &arg, 1, &changed, nullptr), 1);
  EXPECT_EQ(last_error().number, 13);
  EXPECT_EQ(changed, 1);
  EXPECT_EQ(text_of(arg).size(), 43u);
  pelm_value_clear(&arg);
}

TEST_F(CInterface, OmittedArgumentsTakeTheirDefaults) {
  const Held base("PelmComum2008.Base");
  std::array<pelm_value, 4> args{text("42"), whole(5), absent(), text("0")};
  pelm_value result = PELM_EMPTY_VALUE;
  ASSERT_EQ(pelm_call(base, "CompleteWith", args.data(), args.size(), nullptr, &result), 0);
  EXPECT_EQ(text_of(result), "00042");
  pelm_value_clear(&result);
}

TEST_F(CInterface, BadNumbersAndPointersAreRefusedWithoutHarm) {
  pelm_object object = 0;
  EXPECT_EQ(pelm_create("Nada.Aqui", &object), 1);
  EXPECT_EQ(last_error().number, 429);
  EXPECT_EQ(pelm_create(nullptr, &object), 1);
  EXPECT_EQ(pelm_create("PelmComum2008.CMain", nullptr), 1);
  EXPECT_EQ(last_error().number, 5);
  for (const pelm_object bad : {pelm_object{0}, pelm_object{1}, ~pelm_object{0}}) {
    EXPECT_EQ(pelm_call(bad, "x", nullptr, 0, nullptr, nullptr), 1);
    EXPECT_EQ(last_error().number, 5);
    EXPECT_EQ(pelm_class_name(bad), nullptr);
  }
  ASSERT_EQ(pelm_create("PelmComum2008.CMain", &object), 0);
  EXPECT_EQ(pelm_call(object, nullptr, nullptr, 0, nullptr, nullptr), 1);
  EXPECT_EQ(pelm_call(object, "myCDbl", nullptr, 1, nullptr, nullptr), 1);
  EXPECT_EQ(pelm_release(object), 0);
  EXPECT_EQ(pelm_release(object), 1);
  EXPECT_EQ(last_error().number, 5);
  EXPECT_EQ(pelm_release(0), 0);
  pelm_value_clear(nullptr);
}

TEST_F(CInterface, ClassObjectsMakeObjectsAndKeepTheLibraryInUse) {
  pelm_class cls = 0;
  ASSERT_EQ(pelm_get_class_object("PelmComum2008.Base", &cls), 0);
  EXPECT_EQ(pelm_can_unload(), 0);
  pelm_object object = 0;
  ASSERT_EQ(pelm_class_create(cls, &object), 0);
  EXPECT_STREQ(pelm_class_name(object), "Base");
  EXPECT_EQ(pelm_class_release(object), 1) << "an object is no class object";
  EXPECT_EQ(pelm_release(object), 0);
  EXPECT_EQ(pelm_class_release(cls), 0);
  EXPECT_EQ(pelm_get_class_object("PelmComum2008.Field", &cls), 1);
  EXPECT_EQ(last_error().number, 429);
}

TEST_F(CInterface, AnObjectBelongsToItsThread) {
  const Held main("PelmComum2008.CMain");
  pelm_object other = 0;
  ASSERT_EQ(pelm_add_ref(main, &other), 0);
  int status = 0;
  std::int32_t number = 0;
  int released = 1;
  std::thread([&] {
    pelm_value result = PELM_EMPTY_VALUE;
    status = pelm_get(main, "IsWeb", nullptr, 0, &result);
    number = last_error().number;
    released = pelm_release(other);
  }).join();
  EXPECT_EQ(status, 1);
  EXPECT_EQ(number, 5);
  EXPECT_EQ(released, 0);
  EXPECT_EQ(last_error().number, 0) << "another thread's failure is not this one's";
}

TEST_F(CInterface, AThreadsEndLetsItsObjectsGo) {
  std::thread([] {
    pelm_object object = 0;
    pelm_create("PelmComum2008.CMain", &object);
  }).join();
  EXPECT_EQ(pelm_can_unload(), 1);
}

struct Page {
  std::map<std::string, std::int32_t> numbers;
  std::string written;
};

int application_value(void* user, const char* name, pelm_value* value) {
  const auto& numbers = static_cast<Page*>(user)->numbers;
  const auto found = numbers.find(name);
  if (found == numbers.end()) return 0;
  *value = whole(found->second);
  return 1;
}

void write(void* user, const char* data, std::size_t size) {
  static_cast<Page*>(user)->written.append(data, size);
}

TEST_F(CInterface, APageGivesApplicationVariablesAndTakesWhatIsWritten) {
  Page page{{{"dataconn_ConnectionTimeout", 11}, {"dataconn_Database", 2}}, {}};
  const pelm_page_callbacks callbacks{&page, application_value, write, nullptr};
  pelm_page serving = 0;
  ASSERT_EQ(pelm_page_begin(&callbacks, &serving), 0);
  {
    const Held main("PelmComum2008.CMain");
    pelm_value conn = PELM_EMPTY_VALUE;
    ASSERT_EQ(pelm_get(main, "CConn", nullptr, 0, &conn), 0);
    ASSERT_EQ(pelm_call(conn.as.object, "ConfigureConn", nullptr, 0, nullptr, nullptr), 0)
        << last_error().description;
    pelm_value timeout = PELM_EMPTY_VALUE;
    pelm_get(conn.as.object, "ODBC_CONN_TIMEOUT", nullptr, 0, &timeout);
    EXPECT_EQ(timeout.type, PELM_INTEGER);
    EXPECT_EQ(timeout.as.integer, 11);
    pelm_value_clear(&conn);
    EXPECT_EQ(pelm_end(main), 0);

    const Held calendar("PelmComum2008.Calendario");
    ASSERT_EQ(pelm_call(calendar, "ShowCalendar", nullptr, 0, nullptr, nullptr), 0)
        << last_error().description;
  }
  EXPECT_THAT(page.written, testing::HasSubstr("<"));
  EXPECT_EQ(pelm_page_end(serving), 0);
  EXPECT_EQ(pelm_page_end(serving), 1);
}

TEST_F(CInterface, APageThatHasEndedIsNotAskedAgain) {
  Page page{{{"dataconn_ConnectionTimeout", 11}, {"dataconn_Database", 2}}, {}};
  const pelm_page_callbacks callbacks{&page, application_value, write, nullptr};
  const Held conn("PelmComum2008.Conn");
  pelm_page serving = 0;
  ASSERT_EQ(pelm_page_begin(&callbacks, &serving), 0);
  const Held started("PelmComum2008.Calendario");
  ASSERT_EQ(pelm_call(conn, "ConfigureConn", nullptr, 0, nullptr, nullptr), 0);
  ASSERT_EQ(pelm_page_end(serving), 0);

  EXPECT_EQ(pelm_call(conn, "ConfigureConn", nullptr, 0, nullptr, nullptr), 1);
  EXPECT_EQ(last_error().number, 91);
  EXPECT_EQ(pelm_call(started, "ShowCalendar", nullptr, 0, nullptr, nullptr), 0);
  EXPECT_EQ(page.written, "");
}

TEST_F(CInterface, APageHasAQueryString) {
  Page page;
  const pelm_page_callbacks callbacks{&page, nullptr, write, "date=05%2F03%2F2008&campo=inicio"};
  pelm_page serving = 0;
  ASSERT_EQ(pelm_page_begin(&callbacks, &serving), 0);
  {
    const Held calendar("PelmComum2008.Calendario");
    ASSERT_EQ(pelm_call(calendar, "ShowCalendar", nullptr, 0, nullptr, nullptr), 0);
  }
  EXPECT_EQ(pelm_page_end(serving), 0);
  EXPECT_THAT(page.written, testing::HasSubstr("campo=inicio&date=05/04/2008"));
}

TEST_F(CInterface, PagesNestAndEndInTurn) {
  const pelm_page_callbacks callbacks{nullptr, nullptr, nullptr, nullptr};
  pelm_page outer = 0;
  pelm_page inner = 0;
  ASSERT_EQ(pelm_page_begin(&callbacks, &outer), 0);
  ASSERT_EQ(pelm_page_begin(&callbacks, &inner), 0);
  EXPECT_EQ(pelm_page_end(outer), 1);
  EXPECT_EQ(pelm_page_end(inner), 0);
  EXPECT_EQ(pelm_page_end(outer), 0);
}

TEST_F(CInterface, TellsItsTypeLibraryAsJson) {
  pelm_value json = PELM_EMPTY_VALUE;
  ASSERT_EQ(pelm_describe("PelmComum2008.Base", &json), 0);
  EXPECT_THAT(text_of(json), testing::HasSubstr("\"cadastrar_item\""));
  pelm_value_clear(&json);
  ASSERT_EQ(pelm_describe(nullptr, &json), 0);
  EXPECT_EQ(text_of(json).front(), '[');
  pelm_value_clear(&json);
  EXPECT_EQ(pelm_describe("Nada", &json), 1);
  EXPECT_EQ(last_error().number, 429);
}

TEST_F(CInterface, AColumnOfARecordSetIsWrittenThroughItsDefaultMember) {
  const Held connection("ADODB.Connection");
  const Held records("ADODB.Recordset");
  pelm_value where = text("Provider=SQLite;Data Source=:memory:");
  ASSERT_EQ(pelm_call(connection, "Open", &where, 1, nullptr, nullptr), 0);
  pelm_value sql = text("create table cor (n integer primary key, nome text)");
  ASSERT_EQ(pelm_call(connection, "Execute", &sql, 1, nullptr, nullptr), 0);
  std::array<pelm_value, 5> opening{text("cor"), absent(), whole(1), whole(3), whole(2)};
  opening[1].type = PELM_OBJECT;
  opening[1].as.object = connection;
  ASSERT_EQ(pelm_call(records, "Open", opening.data(), opening.size(), nullptr, nullptr), 0)
      << last_error().description;
  ASSERT_EQ(pelm_call(records, "AddNew", nullptr, 0, nullptr, nullptr), 0);
  const pelm_value column = text("NOME");
  const pelm_value value = text("azul");
  ASSERT_EQ(pelm_put(records, "", &column, 1, &value), 0) << last_error().description;
  ASSERT_EQ(pelm_call(records, "Update", nullptr, 0, nullptr, nullptr), 0)
      << last_error().description;

  pelm_value field = PELM_EMPTY_VALUE;
  pelm_value back = PELM_EMPTY_VALUE;
  ASSERT_EQ(pelm_get(records, "", &column, 1, &field), 0);
  ASSERT_EQ(pelm_get(field.as.object, "Value", nullptr, 0, &back), 0);
  EXPECT_EQ(text_of(back), "azul");
  pelm_value_clear(&back);
  pelm_value_clear(&field);
}

}  // namespace
