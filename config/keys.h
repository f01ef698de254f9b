// The keys of the configuration file: numbers, names, defaults and meanings. Reader, log header and the
// command walk these tables.
#pragma once

#include <array>
#include <cstdint>

namespace marvane {

/// Numbers of the numeric keys. There is no key 23.
enum class NumericKey : std::uint8_t
{
    LogEnabled = 0,
    LogFileMaxSize = 1,
    LogFileMaxNum = 2,
    LogFlush = 3,
    LogFnCalls = 4,
    LogFnDecodeArgs = 5,
    LogFnDecodeRsps = 6,
    LogCbCalls = 7,
    LogCallOuts = 8,
    LogDoIPComms = 9,
    LogCommsFile = 10,
    LogMaxPduBuff = 11,
    LogNewFileCfg = 12,
    LogEngineeringMode = 13,
    AppendLog = 14,
    CustomerDoIPSupport = 15,
    CustomerNRCHandling = 16,
    CustomerAPIHandling = 17,
    CustomerCLLEvtQTO = 18,
    CustomerPDUStartCommReconRet = 19,
    CustomerPDUConnectReconRet = 20,
    DoIPReconnectDefTO = 21,
    DoIPFilterNetworks = 22,
    DoIPTlsRecordSizeLimit = 24,
    LogTlsSessionKey = 25,
};

/// Meaning of a key that only the header of a log shows.
inline constexpr const char* NoEffect = "no effect; shown in the header of a log";

/// A key of type "UNUM32".
struct NumericKeyName
{
    NumericKey Key;
    const char* Name;
    std::uint32_t Default; ///< value while the file has no such attribute
    const char* Meaning;   ///< one line for people
};

/// Every numeric key in ascending number: the order of the filling and of the header.
inline constexpr std::array<NumericKeyName, 25> NumericKeyNames = {{
    {NumericKey::LogEnabled, "LogEnabled", 0, "1 logs; 0 forwards calls without a log; above 1 is refused"},
    {NumericKey::LogFileMaxSize, "LogFileMaxSize", 0, "bytes above which a new file begins; 0: never"},
    {NumericKey::LogFileMaxNum, "LogFileMaxNum", 0, "old files kept, less one; 0: one file for ever"},
    {NumericKey::LogFlush, "LogFlush", 0, "1 hands each line to the system before the call goes on"},
    {NumericKey::LogFnCalls, "LogFnCalls", 0, "0 no calls; 1 entry and exit lines; 2 arguments too"},
    {NumericKey::LogFnDecodeArgs, "LogFnDecodeArgs", 0, "arguments: 1 decoded, 2 with bytes of buffers"},
    {NumericKey::LogFnDecodeRsps, "LogFnDecodeRsps", 0, "results: 1 decoded, 2 with bytes of buffers"},
    {NumericKey::LogCbCalls, "LogCbCalls", 0, "1 logs event callbacks"},
    {NumericKey::LogCallOuts, "LogCallOuts", 0, "1 adds a line when the target library returns"},
    {NumericKey::LogDoIPComms, "LogDoIPComms", 0,
     "with LogCommsFile 1: 1 gives comms reports their own file"},
    {NumericKey::LogCommsFile, "LogCommsFile", 0,
     "with LogDoIPComms 1: 1 gives comms reports their own file"},
    {NumericKey::LogMaxPduBuff, "LogMaxPduBuff", 32, "most bytes of a payload that a dump shows"},
    {NumericKey::LogNewFileCfg, "LogNewFileCfg", 0, "1 begins a new file after each PDUModuleDisconnect"},
    {NumericKey::LogEngineeringMode, "LogEngineeringMode", 0, NoEffect},
    {NumericKey::AppendLog, "AppendLog", 0, NoEffect},
    {NumericKey::CustomerDoIPSupport, "CustomerDoIPSupport", 0, NoEffect},
    {NumericKey::CustomerNRCHandling, "CustomerNRCHandling", 0, NoEffect},
    {NumericKey::CustomerAPIHandling, "CustomerAPIHandling", 0, NoEffect},
    {NumericKey::CustomerCLLEvtQTO, "CustomerCLLEvtQTO", 0, NoEffect},
    {NumericKey::CustomerPDUStartCommReconRet, "CustomerPDUStartCommReconRet", 0, NoEffect},
    {NumericKey::CustomerPDUConnectReconRet, "CustomerPDUConnectReconRet", 0, NoEffect},
    {NumericKey::DoIPReconnectDefTO, "DoIPReconnectDefTO", 0, NoEffect},
    {NumericKey::DoIPFilterNetworks, "DoIPFilterNetworks", 0, NoEffect},
    {NumericKey::DoIPTlsRecordSizeLimit, "DoIPTlsRecordSizeLimit", 0,
     "overwrites the application's default event callback: leave it out"},
    {NumericKey::LogTlsSessionKey, "LogTlsSessionKey", 0,
     "overwrites the application's default event callback: leave it out"},
}};

/// A key of type "String".
struct StringKeyName
{
    std::uint8_t Key;
    const char* Name;
    const char* Meaning; ///< one line for people
};

/// Meaning of the keys that set a level of the diagnostic log.
inline constexpr const char* StartLevel = "level of the diagnostic log while Marvane starts";

/// Every text key with a number in ascending order. There is no key 28.
inline constexpr std::array<StringKeyName, 30> StringKeyNames = {{
    {0, "InstalledPath", "folder of the target library with its separator; . is the folder of Marvane"},
    {1, "ShortName", NoEffect},
    {2, "Version", NoEffect},
    {3, "TargetCustomer", NoEffect},
    {4, "InstallationType", NoEffect},
    {5, "PDUAPILibDll", "file name of the target library"},
    {6, "DoIPEntityKey", NoEffect},
    {7, "DbgGENERAL", StartLevel},
    {8, "DbgAPP", StartLevel},
    {9, "DbgCLL", StartLevel},
    {10, "DbgCOMMS", StartLevel},
    {11, "DbgCOMPARAM", StartLevel},
    {12, "DbgCOP", StartLevel},
    {13, "DbgDATA", StartLevel},
    {14, "DbgEXCEPT", StartLevel},
    {15, "DbgMODULE", StartLevel},
    {16, "DbgPRTCL", StartLevel},
    {17, "DbgPRTCLAPP", StartLevel},
    {18, "DbgPRTCLPHY", StartLevel},
    {19, "DbgPRTCLTRANS", StartLevel},
    {20, "DbgTIMER", StartLevel},
    {21, "DbgTSTRPRS", StartLevel},
    {22, "DbgUSER1", StartLevel},
    {23, "DbgVCI", StartLevel},
    {24, "DbgVEHRX", StartLevel},
    {25, "DbgVEHTX", StartLevel},
    {26, "InternalLogFile", NoEffect},
    {27, "InternalLogDir", NoEffect},
    {29, "DoIPTlsPemCertificateFilePath", NoEffect},
    {30, "DoIPTlsPemCertificateHashFolderPath", NoEffect},
}};

/// The text key without a number: the folder of the log files.
inline constexpr StringKeyName LogFileDirKey = {31, "LogFileDir", "folder of the log files; required"};

/// True while these two settings log anything at all.
constexpr bool LoggingActive(std::uint32_t logEnabled, std::uint32_t logNewFileCfg)
{
    return logEnabled == 1 || logNewFileCfg == 1;
}

} // namespace marvane
