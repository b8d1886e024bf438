// Sequential numbering: the next number of a named sequence, given once.
#include <limits>
#include <string>

#include "business/scratch_recordset.h"
#include "frame/error_trap.h"
#include "frame/mensagem_erro.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm {

using business::ScratchRecordset;
using frame::error_trap;
using frame::shared_conn;

namespace {

constexpr std::int32_t kNoMaximum = -1;

std::int32_t next(std::int32_t number) {
  if (number == std::numeric_limits<std::int32_t>::max()) raise_error(error_number::kOverflow);
  return number + 1;
}

std::int16_t position_after(std::string_view marker) {
  const std::size_t position = text::length(marker) + 1;
  if (position > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) {
    raise_error(error_number::kOverflow);
  }
  return static_cast<std::int16_t>(position);
}

/// 1 to `maximum`, again and again. A maximum of 0 cannot cycle: the number itself.
std::int32_t cycled(std::int32_t number, std::int32_t maximum) {
  if (maximum == kNoMaximum || maximum == 0) return number;
  const std::int32_t remainder = number % maximum;
  return remainder != 0 ? remainder : maximum;
}

/// True once the row is stored.
bool stored(ado::Recordset& row) {
  try {
    row.Update();
    return true;
  } catch (const Error&) {
    row.Cancel();
    return false;
  }
}

void close_quietly(ado::Recordset& row) {
  try {
    row.Close();
  } catch (const Error&) {
    // kept: once the number is taken, no error reaches the caller
  }
}

}  // namespace

std::int32_t Base::fObterNovoNumOrd(std::string_view CODIGO, std::string_view NOME_INTERNO,
                                    std::int32_t Max) {
  return error_trap("Base", "fObterNovoNumOrd", [&] {
    const std::string marker = "##" + std::string(CODIGO) + "##";
    const std::int16_t first_digit = position_after(marker);

    std::string parameter;
    if (!NOME_INTERNO.empty()) parameter = fObterValorParametro(NOME_INTERNO, 1, "S");
    if (parameter == "-1") frame::raise_mensagem_erro();
    const std::int32_t start = parameter.empty() ? 1 : next(to_long(parameter));

    // kept: the code is not escaped
    sSQL =
        "SELECT "
        "ISNULL(MAX(CONVERT(INTEGER, SUBSTRING(descricao, " +
        std::to_string(first_digit) + ", LEN(descricao))))+1, " + std::to_string(start) +
        ") nNumOrd "
        "FROM "
        "chaveunica "
        "WHERE "
        "descricao LIKE '##" +
        std::string(CODIGO) + "##%'";
    std::int32_t number = 0;
    {
      const ScratchRecordset largest(rsBase, shared_conn().RunSQL(sSQL));
      number = to_long(largest->Fields("nNumOrd").Value());
      largest->Close();
    }

    const Oid oid = Gerar_Oid();
    // kept: any failure to store moves on to the next number, without limit
    for (;; number = next(number)) {
      const ScratchRecordset key(rsBase, shared_conn().OpenTable("ChaveUnica"));
      key->AddNew();
      key->Fields("OID") = oid;
      key->Fields("DESCRICAO") = marker + std::to_string(number);
      if (!stored(*key)) continue;
      close_quietly(*key);
      return cycled(number, Max);
    }
  });
}

}  // namespace pelm
