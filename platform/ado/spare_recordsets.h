/// Record sets made and let go again and again: each thread keeps the memory that they have grown,
/// for a page opens many, one after another.
#pragma once

#include <memory>

#include "pelm/ado/recordset.h"
#include "platform/ado/recordset_impl.h"

namespace pelm::ado {

std::shared_ptr<Recordset> make_recordset();

// Its inner side, as new; and given back, open or not.
std::unique_ptr<RecordsetImpl> take_recordset_impl();
void keep_recordset_impl(std::unique_ptr<RecordsetImpl> impl) noexcept;

}  // namespace pelm::ado
