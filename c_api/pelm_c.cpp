// The C interface: each function is a few calls of the type library behind a guard.
#include "pelm/pelm_c.h"

#include <array>
#include <cstddef>
#include <memory>
#include <memory_resource>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "automation/describe.h"
#include "automation/dispatch.h"
#include "c_api/guard.h"
#include "c_api/handles.h"
#include "c_api/pages.h"
#include "c_api/providers.h"
#include "c_api/values.h"
#include "pelm/error.h"
#include "pelm/version.h"

namespace {

using namespace pelm::c_api;  // NOLINT: this file is their only user
using pelm::ObjectRef;
using pelm::OptionalArg;
using pelm::Variant;
namespace automation = pelm::automation;

/// A class object: one of these, held by a number.
class ClassObject : public pelm::Object {
 public:
  explicit ClassObject(const automation::ClassInfo& cls) : cls_(cls) {}
  ObjectRef create() const { return automation::CreateObject(cls_.programmatic_identifier); }

 private:
  const automation::ClassInfo& cls_;
};

template <class T>
T& required(T* pointer) {
  if (pointer == nullptr) pelm::raise_error(pelm::error_number::kInvalidCall);
  return *pointer;
}

std::string_view name_of(const char* name) { return &required(name); }

/// An object of one of our own kinds behind a number.
template <class T>
std::shared_ptr<T> found_as(std::uint64_t handle) {
  auto object = std::dynamic_pointer_cast<T>(Handles::instance().find(handle));
  if (!object) pelm::raise_error(pelm::error_number::kInvalidCall);
  return object;
}

void give(pelm_value* result, const Variant& value) {
  if (result != nullptr) *result = to_c(value);
}

/// Values of a call. There is room for a few without asking for memory.
class CallValues {
 public:
  CallValues() = default;
  CallValues(const CallValues&) = delete;
  CallValues& operator=(const CallValues&) = delete;

  std::pmr::vector<OptionalArg>& operator*() { return values_; }
  std::pmr::vector<OptionalArg>* operator->() { return &values_; }

 private:
  static constexpr std::size_t kFew = 8;

  alignas(OptionalArg) std::array<std::byte, kFew * sizeof(OptionalArg)> place_;
  std::pmr::monotonic_buffer_resource memory_{place_.data(), place_.size()};
  std::pmr::vector<OptionalArg> values_{&memory_};
};

/// The arguments of a call, and as they were given: what a call changed by reference is handed
/// back, also when it fails.
class CallArguments {
 public:
  CallArguments(pelm_value* args, std::size_t count, unsigned char* changed)
      : args_(args), changed_(changed) {
    from_c(args, count, *values_, count);
    for (std::size_t i = 0; i < count; ++i) values_->push_back((*values_)[i]);  // there is room
    for (std::size_t i = 0; changed_ != nullptr && i < count; ++i) changed_[i] = 0;
  }
  CallArguments(const CallArguments&) = delete;
  CallArguments& operator=(const CallArguments&) = delete;

  automation::Arguments used() { return std::span(*values_).first(values_->size() / 2); }

  void hand_back() {
    const automation::Arguments used = this->used();
    for (std::size_t i = 0; i < used.size(); ++i) {
      if (used[i] == (*values_)[used.size() + i] || !used[i]) continue;
      args_[i] = to_c(*used[i]);
      if (changed_ != nullptr) changed_[i] = 1;
    }
  }

 private:
  pelm_value* args_;
  unsigned char* changed_;
  CallValues values_;  // as used, then as given
};

}  // namespace

namespace pelm::c_api {

LastError& last_error() noexcept {
  thread_local LastError error;
  return error;
}

void keep_error(std::int32_t number, std::string_view source,
                std::string_view description) noexcept {
  LastError& error = last_error();
  error.number = number;
  try {
    error.source = source;
    error.description = description;
  } catch (const std::bad_alloc&) {
    error.source.clear();
    error.description.clear();
  }
}

}  // namespace pelm::c_api

extern "C" {

uint32_t pelm_abi_version(void) { return PELM_ABI_VERSION; }

const char* pelm_version(void) { return pelm::kVersion.data(); }

void pelm_value_clear(pelm_value* value) {
  if (value != nullptr) clear(*value);
}

int pelm_create(const char* programmatic_identifier, pelm_object* object) {
  return guarded([&] {
    pelm_object& result = required(object);
    register_providers();
    result = Handles::instance().add(automation::CreateObject(name_of(programmatic_identifier)));
  });
}

int pelm_add_ref(pelm_object object, pelm_object* another) {
  return guarded([&] {
    pelm_object& result = required(another);
    result = Handles::instance().add(Handles::instance().find(object));
  });
}

int pelm_release(pelm_object object) {
  return guarded([&] {
    if (object != 0) Handles::instance().release(object);
  });
}

int pelm_end(pelm_object object) {
  return guarded([&] { automation::end_page_object(*Handles::instance().find(object)); });
}

const char* pelm_class_name(pelm_object object) {
  const char* name = nullptr;
  guarded([&] { name = automation::class_of(*Handles::instance().find(object)).name.data(); });
  return name;
}

int pelm_same_object(pelm_object a, pelm_object b) {
  bool same = false;
  guarded([&] { same = Handles::instance().find(a) == Handles::instance().find(b); });
  return same ? 1 : 0;
}

int pelm_call(pelm_object object, const char* name, pelm_value* args, size_t count,
              unsigned char* changed, pelm_value* result) {
  return guarded([&] {
    const ObjectRef target = Handles::instance().find(object);
    CallArguments arguments(args, count, changed);
    try {
      const Variant answer = automation::call(*target, name_of(name), arguments.used());
      arguments.hand_back();
      give(result, answer);
    } catch (const pelm::Error&) {
      arguments.hand_back();
      throw;
    }
  });
}

int pelm_get(pelm_object object, const char* name, const pelm_value* index, size_t count,
             pelm_value* result) {
  return guarded([&] {
    const ObjectRef target = Handles::instance().find(object);
    CallValues args;
    from_c(index, count, *args);
    give(&required(result), automation::get(*target, name_of(name), *args));
  });
}

int pelm_put(pelm_object object, const char* name, const pelm_value* index, size_t count,
             const pelm_value* value) {
  return guarded([&] {
    const ObjectRef target = Handles::instance().find(object);
    CallValues args;
    from_c(index, count, *args);
    const OptionalArg assigned = from_c(required(value));
    if (!assigned) pelm::raise_error(pelm::error_number::kArgumentNotOptional);
    automation::put(*target, name_of(name), *assigned, *args);
  });
}

int pelm_get_class_object(const char* programmatic_identifier, pelm_class* class_object) {
  return guarded([&] {
    pelm_class& result = required(class_object);
    register_providers();
    const std::string_view wanted = name_of(programmatic_identifier);
    const automation::ClassInfo* cls = automation::find_class(wanted);
    if (cls == nullptr || !cls->create) {
      pelm::raise_error(pelm::error_number::kCannotCreateObject, pelm::kProjectSource, wanted);
    }
    result = Handles::instance().add(std::make_shared<ClassObject>(*cls));
  });
}

int pelm_class_create(pelm_class class_object, pelm_object* object) {
  return guarded([&] {
    pelm_object& result = required(object);
    result = Handles::instance().add(found_as<ClassObject>(class_object)->create());
  });
}

int pelm_class_release(pelm_class class_object) {
  return guarded([&] {
    found_as<ClassObject>(class_object);
    Handles::instance().release(class_object);
  });
}

int pelm_can_unload(void) { return Handles::instance().empty() ? 1 : 0; }

void pelm_last_error(pelm_error* error) {
  if (error == nullptr) return;
  const LastError& last = last_error();
  error->number = last.number;
  error->source = last.number == 0 ? "" : last.source.c_str();
  error->description = last.number == 0 ? "" : last.description.c_str();
}

int pelm_page_begin(const pelm_page_callbacks* callbacks, pelm_page* page) {
  return guarded([&] {
    pelm_page& result = required(page);
    result = CallbackPage::begin(required(callbacks));
  });
}

int pelm_page_end(pelm_page page) {
  return guarded([&] {
    found_as<CallbackPage>(page)->end();
    Handles::instance().release(page);
  });
}

int pelm_describe(const char* name, pelm_value* json) {
  return guarded([&] {
    pelm_value& result = required(json);
    result = to_c(Variant(name == nullptr ? automation::describe_all_as_json()
                                          : automation::describe_as_json(name)));
  });
}

}  // extern "C"
