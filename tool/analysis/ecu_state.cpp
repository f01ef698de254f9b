#include "tool/analysis/ecu_state.h"

#include "tool/analysis/link_words.h"
#include "tool/console/row_text.h"
#include "tool/words/describe.h"

namespace marvane::tool {

namespace {

constexpr std::uint8_t SessionControl = 0x10;
constexpr std::uint8_t EcuReset = 0x11;
constexpr std::uint8_t SecurityAccess = 0x27;

std::string SessionName(const words::Service& service, std::uint8_t number)
{
    const words::SubFunction* session = words::FindSubFunction(service, number);
    return session ? std::string(session->Name) : "0x" + ByteText(number);
}

} // namespace

std::optional<std::string> EcuStates::Change(const read::Exchange& exchange)
{
    const words::Dialect dialect = DialectOf(*exchange.On);
    const bool isDone = exchange.Result == read::Outcome::Answered || exchange.Result == read::Outcome::Sent;
    if (dialect != words::Dialect::Uds || !isDone)
        return std::nullopt;
    const words::RequestWords request = words::DescribeRequest(dialect, exchange.Request);
    if (!request.What || !request.SubFunction)
        return std::nullopt;
    State& state = states_[{exchange.Session, exchange.On->Module, exchange.On->Handle}];
    const State before = state;
    if (request.What->Sid == SessionControl) {
        // A change of session locks the security again.
        state = {*request.SubFunction, 0};
        if (state.Session == before.Session)
            return std::nullopt;
        return "session " + SessionName(*request.What, state.Session) +
               (before.Level != 0 ? ", security locked" : "");
    }
    if (request.What->Sid == SecurityAccess && *request.SubFunction % 2 == 0) {
        state.Level = static_cast<std::uint8_t>(*request.SubFunction - 1);
        return "security level " + std::to_string(state.Level) + " unlocked";
    }
    if (request.What->Sid == EcuReset) {
        state = {};
        if (before.Session != 1 || before.Level != 0)
            return std::string("reset: default session, security locked");
    }
    return std::nullopt;
}

std::string EcuStates::Text(const read::Link& link) const
{
    const auto found = states_.find({link.Session, link.Module, link.Handle});
    const State state = found == states_.end() ? State() : found->second;
    const words::Service* control = words::FindService(words::Dialect::Uds, SessionControl);
    std::string text = "session " + SessionName(*control, state.Session);
    if (state.Level == 0)
        return text + ", security locked";
    return text + ", security level " + std::to_string(state.Level) + " unlocked";
}

} // namespace marvane::tool
