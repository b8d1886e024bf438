/// Hands out OIDs from a range reserved in the database. Private to the component; one a thread.
#pragma once

#include <cstdint>

#include "pelm/object.h"
#include "pelm/oid.h"

namespace pelm::identity {

class ManipulaOID : public Object {
 public:
  /// The OID most recently handed out.
  pelm::Oid OID() const { return OID_; }
  /// True while the reserved range still has OIDs to hand out.
  bool TemOID() const { return TemOID_; }
  /// The size of a range, as last read.
  std::int16_t Delta() const { return Delta_; }
  /// The last OID of the reserved range.
  pelm::Oid UltimoOID() const { return UltimoOID_; }

  /// The next OID of the range; the last one a second time; 0 past the range.
  pelm::Oid IncrementaOID();
  /// Reserves a range through the procedure "atualoid" on a private connection with the shared
  /// connection string. False when the range size cannot be told; the range is then lost.
  bool ObtemFaixaOID();

 private:
  bool ObtemDelta();

  pelm::Oid UltimoOID_ = 0;
  pelm::Oid OID_ = 0;
  std::int16_t Delta_ = 0;
  bool TemOID_ = false;
};

}  // namespace pelm::identity
