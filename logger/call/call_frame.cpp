#include "logger/call/call_frame.h"

#include "logger/log/log_files.h"
#include "logger/log/rotation.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

T_PDU_ERROR AnswerNotLoaded(std::string_view name)
{
    if (IsLoaded()) {
        CallText text;
        ReadFrameTime(text);
        LogNotLoaded(text, name);
    }
    return PDU_ERR_PDUAPI_NOT_CONSTRUCTED;
}

void LogEntryLine(const CallForm& call, CallText& text)
{
    const UNUM32 calls = Setting(NumericKey::LogFnCalls);
    if (!IsLoaded() || !LoggingActive() || calls == 0)
        return;
    LogEntry(text, call.name);
    if (calls >= 2) {
        if (!call.arguments)
            LogAppend(text.Buffer, "()"_fmt);
        else if (text.Buffer.HasRoom())
            call.arguments(text.Buffer);
    }
    LogLineEnd(text.Buffer);
}

void LogExitLine(const CallForm& call, CallText& text, T_PDU_ERROR status)
{
    if (!LoggingActive() || Setting(NumericKey::LogFnCalls) == 0)
        return;
    LogExit(text, call.name, status);
    LogCommit(text.Buffer, ApiLogFile);
}

} // namespace

T_PDU_ERROR LogWholeCall(const CallForm& call)
{
    const CPduDll* const target = TargetLibrary();
    if (!target)
        return AnswerNotLoaded(call.name);

    CallText text;
    ReadFrameTime(text);
    LogEntryLine(call, text);
    if (call.before)
        call.before(text);
    CommitEntry(text);

    const T_PDU_ERROR status = call.forward(*target);
    if (!IsLoaded())
        return status;
    CloseCallOut(text, call.name);
    if (call.after)
        call.after(text, status);
    if (!IsLoaded())
        return status;
    LogExitLine(call, text, status);

    if (call.finish)
        call.finish(text);
    else
        CheckRotation(text, call.name);
    return status;
}

DecoderFrame ArgumentFrame(CallText& text)
{
    return {Setting(NumericKey::LogFnCalls), Setting(NumericKey::LogFnDecodeArgs), text.Buffer, text.Time};
}

DecoderFrame ResultFrame(CallText& text)
{
    return {Setting(NumericKey::LogFnCalls), Setting(NumericKey::LogFnDecodeRsps), text.Buffer, text.Time};
}

void ReadFrameTime(CallText& text)
{
    if (LoggingActive())
        text.Time.Read();
}

void LogEntry(CallText& text, std::string_view name)
{
    LogStamped(text.Buffer, text.Time, marks::Entry, name, {});
}

void LogExit(CallText& text, std::string_view name, T_PDU_ERROR status)
{
    // What most calls return is not looked up.
    if (status == PDU_STATUS_NOERROR)
        return LogStamped(text.Buffer, text.Time, marks::Exit, name, "<PDU_STATUS_NOERROR (0x0000)>\n");
    LogStamp(text.Buffer, text.Time);
    LogAppend(text.Buffer, "%s%s<%s (0x%04X)>\n"_fmt, marks::Exit, name, StatusText(status), status);
}

void LogNotLoaded(CallText& text, std::string_view name)
{
    LogStamp(text.Buffer, text.Time);
    LogAppend(text.Buffer, "%s"_fmt, name);
    LogAppendLine(text.Buffer, "%s"_fmt, marks::NotLoaded);
    LogCommit(text.Buffer, ApiLogFile);
}

void CommitEntry(CallText& text)
{
    if (IsLoaded() && LoggingActive())
        WriteToLog(ApiLogFile, text.Buffer.Text());
}

void CloseCallOut(CallText& text, std::string_view name)
{
    if (!LoggingActive())
        return;
    text.Buffer.Clear();
    ReadFrameTime(text);
    if (Setting(NumericKey::LogCallOuts) == 1) {
        LogStamp(text.Buffer, text.Time);
        LogAppendLine(text.Buffer, "%s%s"_fmt, marks::CallOutEnd, name);
    }
}

} // namespace marvane
