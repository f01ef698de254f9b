#include "tests/fuzz/call_sequence.h"

#include <cstdio>
#include <ctime>
#include <thread>

#include <gtest/gtest.h>

namespace marvane::testing {

namespace {

constexpr int DeepestNesting = 3;
constexpr UNUM32 CallCount = 27;

} // namespace

CallSequence::CallSequence(Session& session, std::uint32_t seed, RandomFileFaults* faults)
    : session_(session), random_(seed), logger_(session, [this] { Nested(); }), folder_(session.LogFolder()),
      faults_(faults)
{
}

CallSequence::~CallSequence()
{
    // Otherwise the folder could not be removed.
    folder_.Mend();
}

void CallSequence::Run(int steps)
{
    RecordSource zeros(nullptr, 0);
    Reconfigure(zeros);
    for (int i = 0; i < steps && !::testing::Test::HasFailure(); ++i) {
        logger_.Trace().Add("step " + std::to_string(i));
        RunStep([this] {
            ChooseFaults();
            Step();
        });
    }
    StopFailing();
    session_.Fake().TakeCalls();
}

void CallSequence::RunEachCall(int rounds, const SequenceSettings& changed)
{
    RecordSource zeros(nullptr, 0, BlockMemory::Guarded);
    SequenceSettings settings = RandomSettings(zeros, session_.LogFolder().string());
    settings["LogMaxPduBuff"] = "100000";
    for (const auto& [key, value] : changed)
        settings[key] = value;
    Configure(settings);
    for (int i = 0; i < rounds; ++i) {
        // Long enough for records with several lists.
        const auto withSource = [this](auto action) {
            const std::vector<std::uint8_t> bytes = RandomBytes(2000);
            RecordSource source(bytes.data(), bytes.size(), BlockMemory::Guarded);
            RunStep([&] { action(source); });
        };
        withSource([this](RecordSource& source) { Construct(source); });
        for (UNUM32 choice = 0; choice < CallCount && !::testing::Test::HasFailure(); ++choice)
            withSource([&](RecordSource& source) { Call(choice, source); });
        withSource([this](RecordSource& source) { logger_.RaiseEvent(source); });
        withSource([this](RecordSource& source) { logger_.Report(source); });
        RunStep([this] { Destruct(); });
    }
}

void CallSequence::RunStep(const std::function<void()>& step)
{
    logger_.Checks().BeginStep();
    step();
    logger_.ExpectNoCallUnderWay();
    logger_.Checks().EndStep(logger_.Model());
    if (::testing::Test::HasFailure())
        std::fprintf(stderr, "%s", logger_.Trace().Text().c_str());
}

std::vector<std::uint8_t> CallSequence::RandomBytes(std::size_t size)
{
    std::vector<std::uint8_t> bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random_());
    return bytes;
}

void CallSequence::Step()
{
    const std::vector<std::uint8_t> bytes = RandomBytes(20 + random_() % 400);
    RecordSource source(bytes.data(), bytes.size(), BlockMemory::Guarded);
    // Some run on a thread of the target's own.
    const auto onSomeThread = [&](auto action) {
        if (source.Coin())
            std::thread(action).join();
        else
            action();
    };
    const auto kind = random_() % 100;
    if (logger_.Checks().InDoubt() && kind < 8)
        Recover(source);
    else if (!logger_.Model().HasTarget() && kind < 30)
        Construct(source);
    else if (kind < 70)
        Call(source.Below(CallCount), source);
    else if (kind < 80)
        onSomeThread([&] { logger_.RaiseEvent(source); });
    else if (kind < 88)
        onSomeThread([&] { logger_.Report(source); });
    else if (kind < 92)
        Reconfigure(source);
    else if (kind < 94)
        Construct(source);
    else if (kind < 97)
        Destruct();
    else if (kind < 99)
        TroubleFolder(source);
    else
        WaitForNextSecond();
}

void CallSequence::Nested()
{
    if (logger_.Depth() > DeepestNesting || random_() % 4 != 0)
        return;
    const std::vector<std::uint8_t> bytes = RandomBytes(200);
    RecordSource source(bytes.data(), bytes.size(), BlockMemory::Guarded);
    const auto kind = random_() % 20;
    if (kind < 10)
        Call(source.Below(CallCount), source);
    else if (kind < 14)
        logger_.RaiseEvent(source);
    else if (kind < 18)
        logger_.Report(source);
    else if (kind == 18)
        Construct(source);
    else
        Destruct();
}

void CallSequence::WaitForNextSecond()
{
    // A change of file then gets a new name. Rarely, to save time.
    if (waits_++ >= 2)
        return;
    logger_.Trace().Add("wait");
    const std::time_t begin = std::time(nullptr);
    while (std::time(nullptr) == begin)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

void CallSequence::Reconfigure(RecordSource& source)
{
    Configure(RandomSettings(source, session_.LogFolder().string()));
}

void CallSequence::Configure(const SequenceSettings& settings)
{
    configured_ = settings;
    const std::string text = ConfigurationText(configured_, session_.TargetPath());
    session_.ConfigureText(text);
    logger_.Trace().Add(text);
}

void CallSequence::TroubleFolder(RecordSource& source)
{
    const UNUM32 kind = source.Below(5);
    logger_.Trace().Add("trouble " + std::to_string(kind));
    if (kind == 0) {
        folder_.Remove();
        logger_.Checks().Doubt();
    } else if (kind == 1) {
        folder_.MakeReadOnly();
        logger_.Checks().Doubt();
    } else if (kind == 2) {
        // Trimming erases the file with the lowest name, not the oldest.
        for (UNUM32 i = source.Below(6); i != 0; --i)
            logger_.Checks().Plant("D-PDU_API_Logger_00-00-0000_00-00-0" + std::to_string(i) + ".LGR");
    } else if (kind == 3)
        folder_.AddFolderNamedLikeALog();
    else
        folder_.Mend();
}

bool CallSequence::FilesMayFail() const
{
    return faults_ && faults_->Applied() == RandomFileFaults::Kind::Failing;
}

void CallSequence::ChooseFaults()
{
    if (!faults_)
        return;
    // A full disk, say, lasts for some steps.
    if (FilesMayFail() ? random_() % 4 == 0 : random_() % 40 != 0)
        return StopFailing();
    faults_->Apply(RandomFileFaults::Kind::Failing);
    logger_.Checks().Doubt();
}

void CallSequence::StopFailing()
{
    if (faults_)
        faults_->Apply(RandomFileFaults::Kind::Transient);
}

void CallSequence::Recover(RecordSource& source)
{
    StopFailing();
    folder_.Mend();
    do
        Reconfigure(source);
    while (source.Left() != 0 &&
           (configured_["LogEnabled"] != "1" || configured_["LogFileMaxNum"] == "-1" ||
            configured_["LogFileDir"].empty() || configured_["PDUAPILibDll"].starts_with(MissingTarget)));
    // A file that may still be open is closed only by the end of a session whose logging is active.
    Construct(source);
    Destruct();
    Construct(source);
}

void CallSequence::Construct(RecordSource& source)
{
    // In a troubled folder, the result shows whether the file could be opened only if all else is good.
    if (configured_["LogFileDir"].empty() || configured_["PDUAPILibDll"].starts_with(MissingTarget) ||
        configured_["LogEnabled"] == "2") {
        folder_.Mend();
        StopFailing();
    }
    // The logger creates the folder at the first opening and never again.
    const bool isSound =
        (folder_.Exists() || !logger_.Model().FolderWasMade()) && !folder_.IsReadOnly() && !FilesMayFail();
    logger_.Construct(source, configured_, isSound);
}

void CallSequence::Destruct()
{
    logger_.Destruct(random_() % 2 == 0 ? PDU_STATUS_NOERROR : PDU_ERR_FCT_FAILED);
}

} // namespace marvane::testing
