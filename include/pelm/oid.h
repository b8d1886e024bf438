/// The identifier of every item, and the values of it that have a meaning of their own.
#pragma once

#include <cstdint>

namespace pelm {

/// 32-bit signed, unique across the database.
using Oid = std::int32_t;

/// As the OID of a new item: allocate one.
inline constexpr Oid kPedirNovoOid = 7;
/// The scope of an item that was given none.
inline constexpr Oid kEscopoPadrao = 7;
/// As the last updater of a new item: the creator.
inline constexpr Oid kMesmoQueCriador = -1;

}  // namespace pelm
