// The table of error texts.
#include "platform/value/error_table.h"

#include <algorithm>
#include <iterator>

#include "pelm/error.h"

namespace pelm {
namespace {

using namespace error_number;

// Sorted by number: looked up by halves.
constexpr ErrorText kTexts[] = {
    {kProviderFailure, "Unspecified error", "Erro não especificado"},
    {kCantConvertValue,
     "Data value could not be converted for reasons other than sign mismatch or overflow.",
     "O valor não pôde ser convertido para o tipo da coluna."},
    {kPermissionDenied, "Permission denied.", "Permissão negada."},
    {kErrorsInCommand, "One or more errors occurred during processing of command.",
     "Ocorreram um ou mais erros durante o processamento do comando."},
    {kErrorsOccurred,
     "Multiple-step OLE DB operation generated errors. Check each OLE DB status value, if "
     "available. No work was done.",
     "A operação OLE DB de várias etapas gerou erros. Verifique cada valor de status OLE DB, se "
     "disponível. Nenhum trabalho foi realizado."},
    {kDeletedRow, "Row handle referred to a deleted row or a row marked for deletion.",
     "O identificador referia-se a uma linha excluída ou marcada para exclusão."},
    {kIntegrityViolation, "A value violated the integrity constraints for a column or table.",
     "Um valor violou as restrições de integridade de uma coluna ou tabela."},
    {kTimeout, "Timeout expired", "Tempo limite expirado"},
    {kNoTable, "Table does not exist.", "A tabela não existe."},
    {kConcurrencyViolation,
     "Row cannot be located for updating. Some values may have been changed since it was last "
     "read.",
     "A linha não pode ser localizada para atualização. Alguns valores podem ter sido alterados "
     "desde a última leitura."},
    {kLoginFailed, "Authentication failed.", "Falha de autenticação."},
    {kDataOverflow, "Data value is too large for the column.",
     "O valor é grande demais para a coluna."},
    {kInvalidCall, "Invalid procedure call or argument",
     "Chamada de procedimento ou argumento inválido"},
    {kOverflow, "Overflow", "Estouro"},
    {kOutOfMemory, "Out of memory", "Memória insuficiente"},
    {kSubscriptOutOfRange, "Subscript out of range", "Subscrito fora do intervalo"},
    {kDivisionByZero, "Division by zero", "Divisão por zero"},
    {kTypeMismatch, "Type mismatch", "Tipos incompatíveis"},
    {kOutOfStackSpace, "Out of stack space", "Espaço de pilha insuficiente"},
    {kInternal, "Internal error", "Erro interno"},
    {kFileNotFound, "File not found", "Arquivo não encontrado"},
    {kPathNotFound, "Path not found", "Caminho não encontrado"},
    {kObjectNotSet, "Object variable or With block variable not set",
     "A variável do objeto ou a variável do bloco 'With' não foi definida"},
    {kInvalidUseOfNull, "Invalid use of Null", "Uso inválido de Null"},
    {kObjectRequired, "Object required", "O objeto é obrigatório"},
    {kCannotCreateObject, "ActiveX component can't create object",
     "O componente ActiveX não pode criar o objeto"},
    {kMemberNotFound, "Object doesn't support this property or method",
     "O objeto não aceita esta propriedade ou método"},
    {kNamedArgumentNotFound, "Named argument not found", "Argumento nomeado não encontrado"},
    {kArgumentNotOptional, "Argument not optional", "Argumento não opcional"},
    {kWrongArgumentCount, "Wrong number of arguments or invalid property assignment",
     "Número de argumentos incorreto ou atribuição de propriedade inválida"},
    {kWrongArguments,
     "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one "
     "another.",
     "Os argumentos são incorretos, estão fora do intervalo aceitável ou estão em conflito."},
    {kNoCurrentRecord,
     "Either BOF or EOF is True, or the current record has been deleted. Requested operation "
     "requires a current record.",
     "As propriedades BOF ou EOF são True, ou o registro atual foi excluído. A operação "
     "solicitada pelo aplicativo requer um registro atual."},
    {kNotAllowedInContext, "Operation is not allowed in this context.",
     "Operação não permitida neste contexto."},
    {kInTransaction, "Connection object cannot be explicitly closed while in a transaction.",
     "O objeto Connection não pode ser fechado explicitamente durante uma transação."},
    {kProviderCannot, "Object or provider is not capable of performing requested operation.",
     "O objeto ou provedor não é capaz de executar a operação solicitada."},
    {kItemNotFound,
     "Item cannot be found in the collection corresponding to the requested name or ordinal.",
     "O item não pode ser encontrado na coleção correspondente ao nome ou ao ordinal "
     "solicitado."},
    {kWrongValueType, "Application uses a value of the wrong type for the current operation.",
     "O aplicativo usa um valor de tipo incorreto para a operação atual."},
    {kObjectClosed, "Operation is not allowed when the object is closed.",
     "Operação não permitida quando o objeto está fechado."},
    {kObjectOpen, "Operation is not allowed when the object is open.",
     "Operação não permitida quando o objeto está aberto."},
    {kProviderNotFound, "Provider cannot be found. It may not be properly installed.",
     "O provedor não pode ser encontrado. Talvez não esteja instalado corretamente."},
    {kInvalidConnection,
     "The connection cannot be used to perform this operation. It is either closed or invalid in "
     "this context.",
     "Operação não permitida em um objeto com referência a uma conexão fechada ou inválida."},
};

constexpr bool by_number(const ErrorText& a, const ErrorText& b) { return a.number < b.number; }
static_assert(std::is_sorted(std::begin(kTexts), std::end(kTexts), by_number));

constexpr ErrorText kApplicationDefined = {0, "Application-defined or object-defined error",
                                           "Erro definido pelo aplicativo ou pelo objeto"};

}  // namespace

const ErrorText* find_error_text(std::int32_t number) noexcept {
  const auto* found =
      std::lower_bound(std::begin(kTexts), std::end(kTexts), ErrorText{number, {}, {}}, by_number);
  return found != std::end(kTexts) && found->number == number ? found : nullptr;
}

const ErrorText& application_defined_text() noexcept { return kApplicationDefined; }

}  // namespace pelm
