/// The enumerations of the database objects, with the names and values that pages know.
#pragma once

#include <cstdint>

namespace pelm::ado {

/// As an argument of `Open`, unspecified keeps the record set's property.
enum CursorTypeEnum : std::int32_t {
  adOpenUnspecified = -1,
  adOpenForwardOnly = 0,
  adOpenKeyset = 1,
  adOpenDynamic = 2,
  adOpenStatic = 3,
};

enum LockTypeEnum : std::int32_t {
  adLockUnspecified = -1,
  adLockReadOnly = 1,
  adLockPessimistic = 2,
  adLockOptimistic = 3,
  adLockBatchOptimistic = 4,
};

enum CursorLocationEnum : std::int32_t { adUseServer = 2, adUseClient = 3 };

enum CommandTypeEnum : std::int32_t {
  adCmdText = 1,
  adCmdTable = 2,
  adCmdStoredProc = 4,
  adCmdUnknown = 8,
  adCmdTableDirect = 512,
};

inline constexpr std::int32_t adOptionUnspecified = -1;
inline constexpr std::int32_t adExecuteNoRecords = 128;

enum ObjectStateEnum : std::int32_t { adStateClosed = 0, adStateOpen = 1 };

enum ConnectModeEnum : std::int32_t {
  adModeUnknown = 0,
  adModeRead = 1,
  adModeWrite = 2,
  adModeReadWrite = 3,
};

enum PositionEnum : std::int32_t { adPosUnknown = -1, adPosBOF = -2, adPosEOF = -3 };

enum IsolationLevelEnum : std::int32_t {
  adXactUnspecified = -1,
  adXactChaos = 16,
  adXactReadUncommitted = 256,
  adXactReadCommitted = 4096,
  adXactRepeatableRead = 65536,
  adXactSerializable = 1048576,
};

enum EditModeEnum : std::int32_t { adEditNone = 0, adEditInProgress = 1, adEditAdd = 2 };

enum ParameterDirectionEnum : std::int32_t {
  adParamInput = 1,
  adParamOutput = 2,
  adParamInputOutput = 3,
  adParamReturnValue = 4,
};

enum DataTypeEnum : std::int32_t {
  adEmpty = 0,
  adSmallInt = 2,
  adInteger = 3,
  adDouble = 5,
  adDate = 7,
  adBoolean = 11,
  adVariant = 12,
  adBigInt = 20,
  adBinary = 128,
  adVarChar = 200,
  adLongVarChar = 201,
  adVarWChar = 202,
  adLongVarWChar = 203,
};

}  // namespace pelm::ado
