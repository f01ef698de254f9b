#include "logger/state/settings.h"

#include "logger/base/lasting.h"
#include "logger/state/given_back.h"

namespace marvane {

const std::array<NumericKeyName, 25> NumericKeyNames = {{
    {NumericKey::LogEnabled, "LogEnabled", 0},
    {NumericKey::LogFileMaxSize, "LogFileMaxSize", 0},
    {NumericKey::LogFileMaxNum, "LogFileMaxNum", 0},
    {NumericKey::LogFlush, "LogFlush", 0},
    {NumericKey::LogFnCalls, "LogFnCalls", 0},
    {NumericKey::LogFnDecodeArgs, "LogFnDecodeArgs", 0},
    {NumericKey::LogFnDecodeRsps, "LogFnDecodeRsps", 0},
    {NumericKey::LogCbCalls, "LogCbCalls", 0},
    {NumericKey::LogCallOuts, "LogCallOuts", 0},
    {NumericKey::LogDoIPComms, "LogDoIPComms", 0},
    {NumericKey::LogCommsFile, "LogCommsFile", 0},
    {NumericKey::LogMaxPduBuff, "LogMaxPduBuff", 32},
    {NumericKey::LogNewFileCfg, "LogNewFileCfg", 0},
    {NumericKey::LogEngineeringMode, "LogEngineeringMode", 0},
    {NumericKey::AppendLog, "AppendLog", 0},
    {NumericKey::CustomerDoIPSupport, "CustomerDoIPSupport", 0},
    {NumericKey::CustomerNRCHandling, "CustomerNRCHandling", 0},
    {NumericKey::CustomerAPIHandling, "CustomerAPIHandling", 0},
    {NumericKey::CustomerCLLEvtQTO, "CustomerCLLEvtQTO", 0},
    {NumericKey::CustomerPDUStartCommReconRet, "CustomerPDUStartCommReconRet", 0},
    {NumericKey::CustomerPDUConnectReconRet, "CustomerPDUConnectReconRet", 0},
    {NumericKey::DoIPReconnectDefTO, "DoIPReconnectDefTO", 0},
    {NumericKey::DoIPFilterNetworks, "DoIPFilterNetworks", 0},
    {NumericKey::DoIPTlsRecordSizeLimit, "DoIPTlsRecordSizeLimit", 0},
    {NumericKey::LogTlsSessionKey, "LogTlsSessionKey", 0},
}};

const std::array<StringKeyName, 30> StringKeyNames = {{
    {0, "InstalledPath"},
    {1, "ShortName"},
    {2, "Version"},
    {3, "TargetCustomer"},
    {4, "InstallationType"},
    {5, "PDUAPILibDll"},
    {6, "DoIPEntityKey"},
    {7, "DbgGENERAL"},
    {8, "DbgAPP"},
    {9, "DbgCLL"},
    {10, "DbgCOMMS"},
    {11, "DbgCOMPARAM"},
    {12, "DbgCOP"},
    {13, "DbgDATA"},
    {14, "DbgEXCEPT"},
    {15, "DbgMODULE"},
    {16, "DbgPRTCL"},
    {17, "DbgPRTCLAPP"},
    {18, "DbgPRTCLPHY"},
    {19, "DbgPRTCLTRANS"},
    {20, "DbgTIMER"},
    {21, "DbgTSTRPRS"},
    {22, "DbgUSER1"},
    {23, "DbgVCI"},
    {24, "DbgVEHRX"},
    {25, "DbgVEHTX"},
    {26, "InternalLogFile"},
    {27, "InternalLogDir"},
    {29, "DoIPTlsPemCertificateFilePath"},
    {30, "DoIPTlsPemCertificateHashFolderPath"},
}};

std::atomic<std::uint64_t> DefaultEventCallback = 0;
std::array<std::atomic<std::uint32_t>, 24> NumericSettings = {};
std::atomic<std::uint8_t> Loaded = 0;

namespace {

constinit Lasting<StringValues> StringsPlace;

} // namespace

StringValues& StringSettings = *new (&StringsPlace.Held) StringValues;

namespace {

const GivenBack StringsGivenBack(StringSettings);

int HalfShift(NumericKey key)
{
    return key == NumericKey::DoIPTlsRecordSizeLimit ? 0 : 32;
}

} // namespace

std::uint32_t SharedSetting(NumericKey key)
{
    return static_cast<std::uint32_t>(DefaultEventCallback.load(std::memory_order_acquire) >> HalfShift(key));
}

void SetSetting(NumericKey key, std::uint32_t value)
{
    const auto index = static_cast<std::size_t>(key);
    if (index < NumericSettings.size()) {
        NumericSettings[index].store(value, std::memory_order_relaxed);
        return;
    }
    const std::uint64_t half = std::uint64_t{0xFFFFFFFF} << HalfShift(key);
    const std::uint64_t bits = std::uint64_t{value} << HalfShift(key);
    std::uint64_t whole = DefaultEventCallback.load(std::memory_order_relaxed);
    while (!DefaultEventCallback.compare_exchange_weak(whole, (whole & ~half) | bits,
                                                       std::memory_order_acq_rel)) {
    }
}

} // namespace marvane
