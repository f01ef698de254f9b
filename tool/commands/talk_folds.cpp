#include "tool/commands/talk_folds.h"

#include <algorithm>

#include "tool/analysis/link_words.h"
#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

// Runs up to this length are shown request by request.
constexpr std::size_t ShortRun = 3;

constexpr std::uint8_t TransferData = 0x36;
constexpr std::uint8_t TesterPresent = 0x3E;

/// Service and block counter, of the request as of the answer.
constexpr std::uint64_t TransferHead = 2;

std::uint64_t TransferredBytes(const read::Exchange& exchange)
{
    std::uint64_t bytes = std::max(exchange.RequestSize, TransferHead) - TransferHead;
    if (const read::Answer* answer = exchange.Deciding())
        bytes += std::max(answer->Size, TransferHead) - TransferHead;
    return bytes;
}

/// "23.1 kB/s"
std::string RateText(std::uint64_t bytes, std::uint64_t ms)
{
    const std::uint64_t hundredBytes = bytes * 10 / std::max<std::uint64_t>(ms, 1);
    return Grouped(hundredBytes / 10) + "." + std::to_string(hundredBytes % 10) + " kB/s";
}

} // namespace

TalkFold::Kind TalkFold::KindOf(const read::Exchange& exchange)
{
    const bool isGood = exchange.Result == read::Outcome::Answered || exchange.Result == read::Outcome::Sent;
    const bool isPlain = isGood && exchange.ErrorCode == 0 && exchange.SendCycles.value_or(1) == 1;
    if (!isPlain || exchange.Request.empty() || DialectOf(*exchange.On) != words::Dialect::Uds)
        return Kind::None;
    if (exchange.Request[0] == TransferData && exchange.Result == read::Outcome::Answered)
        return Kind::Transfer;
    return exchange.Request[0] == TesterPresent ? Kind::TesterPresent : Kind::None;
}

void TalkFold::Begin(const read::Exchange& exchange)
{
    kind_ = KindOf(exchange);
    first_.push_back(exchange);
    count_ = 1;
    bytes_ = TransferredBytes(exchange);
    isAnswered_ = exchange.AnswerCount > 0;
    end_ = exchange.EndTime;
}

bool TalkFold::Takes(const read::Exchange& exchange)
{
    if (IsEmpty() || kind_ == Kind::None || KindOf(exchange) != kind_)
        return false;
    const read::Link& link = *first_.front().On;
    const bool isSameLink = link.Session == exchange.On->Session && link.Module == exchange.On->Module &&
                            link.Handle == exchange.On->Handle;
    if (!isSameLink || isAnswered_ != (exchange.AnswerCount > 0))
        return false;
    if (first_.size() < ShortRun)
        first_.push_back(exchange);
    ++count_;
    bytes_ += TransferredBytes(exchange);
    end_ = std::max(end_, exchange.EndTime);
    return true;
}

void TalkFold::Clear()
{
    *this = {};
}

std::string TalkFold::Lines(const TalkLayout& layout, read::LogTime begin) const
{
    if (count_ > ShortRun)
        return RunLines(layout, begin);
    std::string lines;
    for (const read::Exchange& exchange : first_)
        lines += TalkLines(layout, exchange, begin);
    return lines;
}

std::string TalkFold::RunLines(const TalkLayout& layout, read::LogTime begin) const
{
    const read::Exchange& first = first_.front();
    const std::int64_t ms = std::max<std::int64_t>(end_ - first.Time, 0);
    RequestText request = RequestTextOf(first);
    ResponseRow response;
    response.After = read::Latency{static_cast<std::uint64_t>(ms) * 1000, true};
    if (kind_ == Kind::Transfer) {
        request.Bytes = "36  " + Counted(count_, "block");
        response.Text =
            "76  " + Grouped(bytes_) + " bytes, " + RateText(bytes_, static_cast<std::uint64_t>(ms));
    } else {
        request.Bytes += "  " + Grouped(count_) + " times";
        response = {isAnswered_ ? ' ' : '.',
                    isAnswered_ ? "7E  " + Grouped(count_) + " times" : "no answer wanted", response.After};
    }
    const std::string number = first.Primitive ? std::to_string(*first.Primitive) : "?";
    return layout.Row(SecondsText(begin, first.Time), number, request, response, PositionText(first.At));
}

} // namespace marvane::tool
