#include "tests/fuzz/sequence_model.h"

namespace marvane::testing {

Start LoggerModel::BeginConstruct(const SequenceSettings& configured, bool folderIsSound)
{
    inEffect_ = configured;
    const bool targetIsGood = !configured.at("PDUAPILibDll").starts_with(MissingTarget);
    const bool hasFolder = !configured.at("LogFileDir").empty();
    startOpensFile_ = !loaded_ && hasFolder && IsActive();
    const Start start = {.OpensFile = startOpensFile_,
                         .FileWasOpen = fileOpen_,
                         .FolderIsSound = folderIsSound,
                         .ErasesAll = Value("LogFileMaxNum") == 0xFFFFFFFF};
    if (!loaded_ && hasFolder && folderIsSound) {
        loaded_ = true;
        fileOpen_ |= startOpensFile_;
        folderWasMade_ |= startOpensFile_;
    }
    commsChanged_ = !startOpensFile_ && (commsChanged_ || WantsCommsApart() != commsApart_);
    if (startOpensFile_)
        commsApart_ = WantsCommsApart();
    if (loaded_ && !target_) {
        // Other values of LogEnabled leave the path of the start before.
        if (Value("LogEnabled") < 2)
            targetPathIsGood_ = targetIsGood;
        target_ = targetPathIsGood_;
    }
    return start;
}

void LoggerModel::ConstructReachesTarget()
{
    target_ = loaded_ = true;
    fileOpen_ |= startOpensFile_;
    folderWasMade_ |= startOpensFile_;
}

void LoggerModel::EndDestruct()
{
    if (!loaded_)
        return;
    target_ = loaded_ = false;
    if (IsActive())
        fileOpen_ = false;
}

void LoggerModel::EndModuleDisconnect()
{
    if (loaded_ && BeginsFileAtDisconnect())
        fileOpen_ = true;
}

LoggerModel::CommsPlace LoggerModel::Comms() const
{
    if (commsChanged_)
        return CommsPlace::Unknown;
    return commsApart_ ? CommsPlace::OwnFile : CommsPlace::ApiLog;
}

UNUM32 LoggerModel::Value(const char* key) const
{
    const auto found = inEffect_.find(key);
    return found == inEffect_.end() ? 0 : static_cast<UNUM32>(std::stoll(found->second));
}

void HandlerModel::Register(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC handler)
{
    if (hCLL != PDU_HANDLE_UNDEF)
        links_[{hMod, hCLL}] = handler;
    else if (hMod != PDU_HANDLE_UNDEF)
        modules_[hMod] = handler;
    else
        default_ = handler;
}

CALLBACKFNC HandlerModel::HandlerOf(UNUM32 hMod, UNUM32 hCLL) const
{
    const auto link = links_.find({hMod, hCLL});
    if (hCLL != PDU_HANDLE_UNDEF && link != links_.end() && link->second)
        return link->second;
    const auto module = modules_.find(hMod);
    if (hMod != PDU_HANDLE_UNDEF && module != modules_.end() && module->second)
        return module->second;
    return default_;
}

} // namespace marvane::testing
