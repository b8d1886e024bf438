// The tables of the test classes, by hand.
#include "tests/host/probe.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/page/response.h"

namespace pelm::host::testing {
namespace {

using automation::Arguments;
using automation::ClassInfo;
using automation::MemberInfo;
using automation::MemberKind;
using automation::ParameterInfo;
using automation::ValueKind;

std::atomic<int> probes_alive{0};

using Body = std::function<Variant(Probe&, Arguments)>;

ParameterInfo parameter(std::string_view name, ValueKind kind = ValueKind::Variant) {
  ParameterInfo info;
  info.name = name;
  info.kind = kind;
  return info;
}

ParameterInfo optional(ParameterInfo info, Variant default_value = {}) {
  info.optional = true;
  info.default_value = std::move(default_value);
  return info;
}

ParameterInfo by_reference(ParameterInfo info) {
  info.by_reference = true;
  return info;
}

MemberInfo method(std::string_view name, std::vector<ParameterInfo> parameters, Body body,
                  ValueKind result = ValueKind::Variant) {
  MemberInfo info;
  info.name = name;
  info.parameters = std::move(parameters);
  info.result = result;
  info.invoke = [body = std::move(body)](Object& object, Arguments args) {
    return body(dynamic_cast<Probe&>(object), args);
  };
  return info;
}

MemberInfo property(std::string_view name, Body body, ValueKind result = ValueKind::Variant) {
  MemberInfo info = method(name, {}, std::move(body), result);
  info.kind = MemberKind::Property;
  return info;
}

MemberInfo writable(MemberInfo info,
                    std::function<void(Probe&, Arguments, const Variant&)> assign) {
  info.kind = MemberKind::Property;
  info.writable = true;
  info.assign = [assign = std::move(assign)](Object& object, Arguments index, const Variant& v) {
    assign(dynamic_cast<Probe&>(object), index, v);
  };
  return info;
}

MemberInfo default_member(MemberInfo info) {
  info.is_default = true;
  return info;
}

/// "Long 5": what arrived, for a script to look at.
std::string description(const OptionalArg& value) {
  if (!value) return "ausente";
  const std::string type(type_name(value->type()));
  switch (value->type()) {
    case Variant::Type::Null:
    case Variant::Type::Object:
      return type + (value->is_object() && !value->object() ? " nada" : "");
    case Variant::Type::Array: {
      std::string text = type + "[";
      for (const Variant& element : value->array()) text += description(element) + ";";
      return text + "]";
    }
    default:
      return type + " " + to_text(*value);
  }
}

/// A call that passes a Variant on and tells what it was.
MemberInfo describing(std::string_view name, ValueKind kind) {
  return method(
      name, {optional(parameter("v", kind))},
      [](Probe&, Arguments args) { return Variant(description(args[0])); }, ValueKind::Text);
}

ClassInfo probe_table() {
  ClassInfo cls;
  cls.name = "Probe";
  cls.programmatic_identifier = "Teste.Probe";
  cls.members = {
      writable(property(
                   "Nome", [](Probe& p, Arguments) { return Variant(p.name); }, ValueKind::Text),
               [](Probe& p, Arguments, const Variant& v) { p.name = to_text(v); }),
      default_member(writable(property("Valor", [](Probe& p, Arguments) { return p.value; }),
                              [](Probe& p, Arguments, const Variant& v) { p.value = v; })),
      writable(
          method("Campo", {parameter("Nome", ValueKind::Text)},
                 [](Probe& p, Arguments args) { return p.fields[to_text(*args[0])]; }),
          [](Probe& p, Arguments index, const Variant& v) { p.fields[to_text(*index[0])] = v; }),
      describing("Descreve", ValueKind::Variant),
      describing("DescreveObjeto", ValueKind::Object),
      method("Soma",
             {parameter("a", ValueKind::Long), optional(parameter("b", ValueKind::Long), 10)},
             [](Probe&, Arguments args) { return Variant(to_long(*args[0]) + to_long(*args[1])); }),
      method("Troca", {by_reference(parameter("texto")), parameter("outro")},
             [](Probe&, Arguments args) {
               args[0] = Variant(to_text(*args[0]) + "!");
               args[1] = Variant("nunca volta");
               return Variant(true);
             }),
      method("TrocaEFalha", {by_reference(parameter("texto"))},
             [](Probe&, Arguments args) -> Variant {
               args[0] = Variant("trocado");
               throw Error(77, "Probe", "falhou depois de trocar");
             }),
      method("Falha", {},
             [](Probe&, Arguments) -> Variant {
               throw Error(1234, "Fonte.Da.Falha", "Descrição <b>da</b> falha");
             }),
      method("Estoura", {},
             [](Probe&, Arguments) -> Variant { throw std::runtime_error("estouro"); }),
      method("Encerra", {}, [](Probe&, Arguments) -> Variant { throw page::PageEnded(); }),
      method(
          "Novo", {}, [](Probe&, Arguments) { return Variant(std::make_shared<Probe>()); },
          ValueKind::Object),
      property("Vivos", [](Probe&, Arguments) { return Variant(Probe::alive()); }),
      property(
          "Nada", [](Probe&, Arguments) { return Variant(ObjectRef()); }, ValueKind::Object),
      property(
          "Colecao", [](Probe&, Arguments) { return Variant(std::make_shared<Collection>()); },
          ValueKind::Object),
  };
  return cls;
}

ClassInfo collection_table() {
  ClassInfo cls;
  cls.name = "Colecao";
  cls.programmatic_identifier = "Teste.Colecao";
  MemberInfo item;
  item.name = "Item";
  item.kind = MemberKind::Property;
  item.parameters = {parameter("Nome")};
  item.result = ValueKind::Object;
  item.is_default = true;
  item.invoke = [](Object&, Arguments args) {
    static const auto kept = std::make_shared<Probe>();
    if (to_text(*args[0]) != "guardado") return Variant(std::make_shared<Probe>());
    return Variant(kept);
  };
  cls.members = {std::move(item)};
  return cls;
}

const ClassInfo& class_of(const Object& object) {
  static const ClassInfo probe = probe_table();
  static const ClassInfo collection = collection_table();
  if (dynamic_cast<const Probe*>(&object)) return probe;
  if (dynamic_cast<const Collection*>(&object)) return collection;
  return automation::class_of(object);
}

}  // namespace

Probe::Probe() { ++probes_alive; }
Probe::~Probe() { --probes_alive; }
int Probe::alive() { return probes_alive; }

PageHooks probe_hooks(std::string& ended) {
  PageHooks hooks;
  hooks.class_of = class_of;
  hooks.create_object = [](std::string_view identifier) -> ObjectRef {
    if (identifier == "Teste.Probe") return std::make_shared<Probe>();
    if (identifier == "Teste.Colecao") return std::make_shared<Collection>();
    return automation::CreateObject(identifier);
  };
  const auto mutex = std::make_shared<std::mutex>();  // pages end on several threads
  hooks.end_object = [&ended, mutex](Object& object) {
    const auto* probe = dynamic_cast<Probe*>(&object);
    if (!probe) return automation::end_page_object(object);
    const std::lock_guard guard(*mutex);
    ended += probe->name + ";";
    if (probe->name == "falha") throw Error(321, "Probe.Fim", "o fim falhou");
  };
  return hooks;
}

}  // namespace pelm::host::testing
