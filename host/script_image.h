/// What all objects of a realm that its scripts can reach are like, so that it can be told whether
/// one of them was altered.
#pragma once

#include <js/GCVector.h>
#include <js/RootingAPI.h>
#include <js/TypeDecls.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pelm::host::script {

class Image {
 public:
  /// Of the current realm, before any script of others ran there. What the engine makes when it is
  /// first asked for is made before. Throws Failed.
  explicit Image(JSContext* cx);

  /// Whether every object still has the same properties, none added, taken away, redefined or given
  /// another value, the same prototype, and can be added to as before. Never wrong with yes; a no
  /// may come of something that no script could see. Takes about ten microseconds.
  bool holds(JSContext* cx) const;

 private:
  /// Of the object at the same place in `objects_`.
  struct Kept {
    const void* shape;     ///< tells everything but the values
    const void* elements;  ///< the engine's common empty ones
    /// The slots of its properties: some within the object, the others beside it.
    std::uint16_t first_within;
    std::uint16_t within;
    std::uint16_t first_beside;
    std::uint16_t beside;
    bool array;
  };

  void keep(JSContext* cx, JS::HandleObject object, std::size_t properties);

  JS::PersistentRootedObjectVector objects_;
  std::vector<Kept> kept_;
  std::vector<std::uint64_t> values_;  ///< of all slots, object after object
};

}  // namespace pelm::host::script
