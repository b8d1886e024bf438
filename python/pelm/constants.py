# The enumerations of the database objects, with the names and values that pages know.
"""The enumerations of the database objects: `constants.adOpenStatic` and the like."""

# CursorTypeEnum
adOpenUnspecified = -1
adOpenForwardOnly = 0
adOpenKeyset = 1
adOpenDynamic = 2
adOpenStatic = 3

# LockTypeEnum
adLockUnspecified = -1
adLockReadOnly = 1
adLockPessimistic = 2
adLockOptimistic = 3
adLockBatchOptimistic = 4

# CursorLocationEnum
adUseServer = 2
adUseClient = 3

# CommandTypeEnum
adCmdText = 1
adCmdTable = 2
adCmdStoredProc = 4
adCmdUnknown = 8
adCmdTableDirect = 512
adOptionUnspecified = -1
adExecuteNoRecords = 128

# ObjectStateEnum
adStateClosed = 0
adStateOpen = 1

# ConnectModeEnum
adModeUnknown = 0
adModeRead = 1
adModeWrite = 2
adModeReadWrite = 3

# PositionEnum
adPosUnknown = -1
adPosBOF = -2
adPosEOF = -3

# IsolationLevelEnum
adXactUnspecified = -1
adXactChaos = 16
adXactReadUncommitted = 256
adXactReadCommitted = 4096
adXactRepeatableRead = 65536
adXactSerializable = 1048576

# EditModeEnum
adEditNone = 0
adEditInProgress = 1
adEditAdd = 2

# ParameterDirectionEnum
adParamInput = 1
adParamOutput = 2
adParamInputOutput = 3
adParamReturnValue = 4

# DataTypeEnum
adEmpty = 0
adSmallInt = 2
adInteger = 3
adDouble = 5
adDate = 7
adBoolean = 11
adVariant = 12
adBigInt = 20
adBinary = 128
adVarChar = 200
adLongVarChar = 201
adVarWChar = 202
adLongVarWChar = 203
