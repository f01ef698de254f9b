// A simulated control unit that answers UDS requests.
#pragma once

#include <string>
#include <vector>

#include "pdu/pdu_api.h"

namespace sim {

using Bytes = std::vector<UNUM8>;

/// One control unit with its session, security access and download. Not thread-safe.
class Ecu
{
public:
    /// The answers to a request, in order: several if the first says "response pending", none if it stays
    /// silent.
    std::vector<Bytes> Answer(const Bytes& request);

private:
    Bytes Session(const Bytes& request);
    Bytes ReadData(const Bytes& request) const;
    Bytes TroubleCodes(const Bytes& request) const;
    Bytes Security(const Bytes& request);
    std::vector<Bytes> Routine(const Bytes& request) const;
    Bytes RequestDownload(const Bytes& request);
    Bytes TransferData(const Bytes& request);
    Bytes ExitTransfer(const Bytes& request);
    static std::vector<Bytes> TesterPresent(const Bytes& request);

    UNUM8 session_ = 1;
    bool unlocked_ = false;
    bool seedSent_ = false;
    bool downloading_ = false;
    UNUM8 nextBlock_ = 1;
};

} // namespace sim
