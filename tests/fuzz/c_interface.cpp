// The C interface fed with calls that mean nothing: wrong references, wrong members, wrong values.
// No database is opened, so an input reaches no file.
#include <array>
#include <cstring>
#include <deque>
#include <vector>

#include "fuzz/fuzzing.h"
#include "pelm/pelm_c.h"

namespace {

constexpr std::array<const char*, 10> kClasses = {
    "PelmComum2008.CMain",        "PelmComum2008.Conn",
    "PelmComum2008.Base",         "PelmComum2008.Menus",
    "PelmComum2008.treeview",     "PelmComum2008.Calendario",
    "PelmComum2008.ManipulaData", "PelmComum2008.ManipulaOID",
    "pelmcomum2008.cmain",        "X"};

/// Members that reach no file and that end without a database.
constexpr std::array<const char*, 32> kMembers = {"CConn",
                                                  "CBase",
                                                  "Menu",
                                                  "Data",
                                                  "Treeview",
                                                  "Calendar",
                                                  "myCDbl",
                                                  "IsWeb",
                                                  "Database",
                                                  "ODBC_STR",
                                                  "Conex",
                                                  "LastSQL",
                                                  "CloseConn",
                                                  "AuxDatabase",
                                                  "MENU_width",
                                                  "MENU_target",
                                                  "PrepData",
                                                  "Minuto_hora",
                                                  "ShowCalendar",
                                                  "ScriptName",
                                                  "AddFolder",
                                                  "AddNode",
                                                  "AddSeparador",
                                                  "tipo_aditivo",
                                                  "fObterNomeItem",
                                                  "Gerar_Oid",
                                                  "SetIconPath",
                                                  "OnStartPage",
                                                  "fCalcularDV10_GeralArrecadacao",
                                                  "fCalcularDV11_Cobranca",
                                                  "fCalcularDV10_Cobranca",
                                                  ""};

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), left_(size) {}
  bool empty() const { return left_ == 0; }
  std::uint8_t byte() {
    if (left_ == 0) return 0;
    --left_;
    return *data_++;
  }
  std::string text() {
    std::string taken;
    for (std::size_t length = byte() % 24U; length > 0 && left_ > 0; --length) {
      taken += static_cast<char>(byte());
    }
    return taken;
  }

 private:
  const std::uint8_t* data_;
  std::size_t left_;
};

class Player {
 public:
  explicit Player(Input input) : input_(input) {}
  ~Player() {
    for (const pelm_object object : objects_) pelm_release(object);
  }
  void play() {
    while (!input_.empty() && ++steps_ < 200) step();
  }

 private:
  pelm_object object() {
    const std::uint8_t which = input_.byte();
    if (objects_.empty() || which == 255) return which * 0x1'0000'0001U;  // never given out
    return objects_[which % objects_.size()];
  }
  const char* member() { return kMembers[input_.byte() % kMembers.size()]; }

  pelm_value value(int depth = 0) {
    pelm_value made = PELM_EMPTY_VALUE;
    made.type = static_cast<std::int32_t>(input_.byte() % 13) - 1;  // two that are no types
    switch (made.type) {
      case PELM_DOUBLE:
      case PELM_DATE: {
        std::array<std::uint8_t, sizeof(double)> bytes{};
        for (auto& byte : bytes) byte = input_.byte();
        std::memcpy(&made.as.number, bytes.data(), bytes.size());
        break;
      }
      case PELM_TEXT:
        texts_.push_back(input_.text());
        made.as.text = {texts_.back().data(), texts_.back().size()};
        break;
      case PELM_OBJECT:
        made.as.object = object();
        break;
      case PELM_ARRAY:
        if (depth < 3) {
          std::vector<pelm_value> items;
          for (std::size_t n = input_.byte() % 4U; n > 0; --n) items.push_back(value(depth + 1));
          arrays_.push_back(std::move(items));
          made.as.array = {arrays_.back().data(), arrays_.back().size()};
        }
        break;
      default:
        made.as.integer = static_cast<std::int32_t>(input_.byte() * 0x01010101U);
    }
    return made;
  }

  /// What comes back is kept when it is an object, so that later calls find it.
  void keep(pelm_value& result) {
    if (result.type == PELM_OBJECT && result.as.object != 0 && objects_.size() < 30) {
      pelm_object another = 0;
      if (pelm_add_ref(result.as.object, &another) == 0) objects_.push_back(another);
    }
    pelm_value_clear(&result);
    pelm_error error{};
    pelm_last_error(&error);
    pelm::fuzz::require(error.source != nullptr && error.description != nullptr);
  }

  void step() {
    texts_.clear();
    arrays_.clear();
    pelm_value result = PELM_EMPTY_VALUE;
    std::array<pelm_value, 5> args{};
    switch (input_.byte() % 8U) {
      case 0:
      case 1: {
        pelm_object made = 0;
        if (objects_.size() < 30 &&
            pelm_create(kClasses[input_.byte() % kClasses.size()], &made) == 0) {
          objects_.push_back(made);
        }
        break;
      }
      case 2: {
        if (objects_.empty()) break;
        const std::size_t which = input_.byte() % objects_.size();
        pelm::fuzz::require(pelm_release(objects_[which]) == 0);
        pelm::fuzz::require(pelm_release(objects_[which]) != 0);  // none twice
        objects_.erase(objects_.begin() + static_cast<std::ptrdiff_t>(which));
        break;
      }
      case 3: {
        const pelm_object on = object();
        const char* name = member();
        const pelm_value given = value();
        pelm_put(on, name, nullptr, 0, &given);
        break;
      }
      case 4:
        pelm_get(object(), member(), nullptr, 0, &result);
        break;
      case 5:
        static_cast<void>(pelm_class_name(object()));
        pelm_same_object(object(), object());
        break;
      case 6: {  // a name that may be anything
        const std::string name = input_.text();
        if (input_.byte() % 2U == 0 && safe(name))
          pelm_get(object(), name.c_str(), nullptr, 0, &result);
        break;
      }
      default: {
        const pelm_object on = object();
        const char* name = member();
        const std::size_t count = input_.byte() % args.size();
        for (std::size_t i = 0; i < count; ++i) args[i] = value();
        std::array<unsigned char, 5> changed{};
        pelm_call(on, name, args.data(), count, changed.data(), &result);
        for (std::size_t i = 0; i < count; ++i) {
          if (changed[i] != 0) pelm_value_clear(&args[i]);
        }
      }
    }
    keep(result);
  }

  /// Long enough to open a connection by its name; nothing that short inputs would miss.
  static bool safe(const std::string& name) { return name.size() < 4; }

  Input input_;
  int steps_ = 0;
  std::vector<pelm_object> objects_;
  std::deque<std::string> texts_;  // what values point into stays where it is
  std::deque<std::vector<pelm_value>> arrays_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pelm::fuzz::require(pelm_abi_version() == PELM_ABI_VERSION);
  Player(Input(data, size)).play();
  return 0;
}
