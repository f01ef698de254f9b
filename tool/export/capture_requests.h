// Requests and what became of them, as packets.
#pragma once

#include "tool/export/capture_output.h"
#include "tool/read/exchanges.h"

namespace marvane::tool::pcapng {

class CaptureRequests : public read::ExchangeSink
{
public:
    /// `out` outlives it.
    explicit CaptureRequests(CaptureOutput& out) : out_(out) {}

    void OnRequest(const read::Exchange& request) override;
    void OnAnswer(const read::Exchange& request, const read::Answer& answer) override;
    void OnError(const read::Exchange& request, const read::RequestError& error) override;
    void OnExchange(const read::Exchange& exchange) override;
    void OnLateAnswer(const read::LateAnswer& late) override;
    void OnStrayAnswer(const read::Link& link, const read::Answer& answer) override;
    void OnStrayError(const read::Link& link, const read::RequestError& error) override;

private:
    std::int64_t TimeOf(const read::Exchange& request, std::optional<std::uint32_t> sinceExecuting,
                        const read::Latency& after, read::LogTime fetched);
    std::int64_t EndOf(const read::Exchange& exchange);
    void AddAnswer(const read::Link& link, const read::Answer& answer, std::uint64_t request, std::int64_t us,
                   const std::string& about);

    CaptureOutput& out_;
};

} // namespace marvane::tool::pcapng
