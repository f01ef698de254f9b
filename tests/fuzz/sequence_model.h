// The model of the logger: the state that it must be in, and what follows from that for the log.
#pragma once

#include <cstdint>
#include <map>
#include <utility>

#include "pdu/pdu_api.h"
#include "tests/fuzz/sequence_settings.h"

namespace marvane::testing {

/// What is known of a PDUConstruct before the target answers it.
struct Start
{
    bool OpensFile;     ///< a log file is opened, if the folder allows it
    bool FileWasOpen;   ///< one was open before
    bool FolderIsSound; ///< else the result is unknown: root may write into a read-only folder too
    bool ErasesAll;     ///< LogFileMaxNum wraps round, so every log file is erased
};

class LoggerModel
{
public:
    /// A PDUConstruct under these settings begins.
    Start BeginConstruct(const SequenceSettings& configured, bool folderIsSound);
    /// The target was asked to construct, so the logger has started, whatever the state of the folder.
    void ConstructReachesTarget();
    /// PDUDestruct returns from the target.
    void EndDestruct();
    /// PDUModuleDisconnect returns from the target: it may open a file even if none was open.
    void EndModuleDisconnect();

    bool IsLoaded() const { return loaded_; }
    bool HasTarget() const { return target_; }
    bool FileIsOpen() const { return fileOpen_; }
    /// The log folder was created: the logger does that once in a process.
    bool FolderWasMade() const { return folderWasMade_; }

    /// A setting in effect; 0 for a key that is not configured.
    UNUM32 Value(const char* key) const;
    const SequenceSettings& InEffect() const { return inEffect_; }

    bool IsActive() const { return Value("LogEnabled") == 1 || Value("LogNewFileCfg") == 1; }
    /// Lines reach an open file.
    bool IsLogged() const { return loaded_ && IsActive() && fileOpen_; }
    bool LogsCalls() const { return IsLogged() && Value("LogFnCalls") != 0; }
    bool LogsCallbacks() const { return Value("LogCbCalls") != 0; }
    /// Every line is in its file when the call returns.
    bool IsOnDisk() const { return Value("LogFlush") == 1 && IsActive(); }
    /// The file that reports go to.
    enum class CommsPlace
    {
        ApiLog,
        OwnFile,
        Unknown ///< the settings have changed, and take effect at the next opening of a file
    };
    CommsPlace Comms() const;
    bool BeginsFileAtDisconnect() const { return Value("LogEnabled") == 1 && Value("LogNewFileCfg") == 1; }
    /// Size in bytes above which a file is changed; 0 for none.
    UNUM32 SizeLimit() const { return Value("LogFileMaxNum") == 0 ? 0 : Value("LogFileMaxSize"); }

private:
    bool WantsCommsApart() const { return (Value("LogCommsFile") & 1) != 0 && Value("LogDoIPComms") != 0; }

    SequenceSettings inEffect_;
    bool loaded_ = false;
    bool target_ = false;
    bool fileOpen_ = false;
    bool commsApart_ = false;
    bool commsChanged_ = false;
    bool targetPathIsGood_ = false;
    bool folderWasMade_ = false;
    bool startOpensFile_ = false;
};

/// The application's event callbacks, as the logger must know them.
class HandlerModel
{
public:
    /// The target registered a handler for a link, a module or all; null removes it.
    void Register(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC handler);
    /// A PDUConstruct forgets the default handler alone.
    void ForgetDefault() { default_ = nullptr; }
    /// The handler that an event must reach: the link's, else the module's, else the default; null for none.
    CALLBACKFNC HandlerOf(UNUM32 hMod, UNUM32 hCLL) const;

private:
    std::map<std::pair<UNUM32, UNUM32>, CALLBACKFNC> links_;
    std::map<UNUM32, CALLBACKFNC> modules_;
    CALLBACKFNC default_ = nullptr;
};

} // namespace marvane::testing
