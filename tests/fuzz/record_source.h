// Turns bytes into numbers, strings and records of the API, for fuzz targets and random sequences of calls.
// Each block of memory has exactly its size, so that a sanitizer detects the first byte read past its end.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "pdu/code_names.h"
#include "pdu/pdu_api.h"

namespace marvane::testing {

/// Where a RecordSource allocates its blocks, each of exactly its size.
enum class BlockMemory
{
    Heap,   ///< a sanitizer detects an access past the end; fast
    Guarded ///< an access past the end crashes
};

/// Owns the records. The same bytes give the same records; after the last byte all bytes are 0.
class RecordSource
{
public:
    RecordSource(const std::uint8_t* data, std::size_t size, BlockMemory memory = BlockMemory::Heap)
        : next_(data), end_(data + size), memory_(memory)
    {
    }
    RecordSource(const RecordSource&) = delete;
    RecordSource& operator=(const RecordSource&) = delete;

    std::size_t Left() const { return static_cast<std::size_t>(end_ - next_); }

    template <class Value> Value Take()
    {
        Value value = {};
        const std::size_t size = sizeof value < Left() ? sizeof value : Left();
        if (size != 0)
            std::memcpy(&value, next_, size);
        next_ += size;
        return value;
    }
    /// A number below a limit of at most 256.
    UNUM32 Below(UNUM32 limit) { return Take<UNUM8>() % limit; }
    bool Coin() { return Below(2) != 0; }
    /// Small, or any number.
    UNUM32 Number() { return Coin() ? Below(8) : Take<UNUM32>(); }
    /// Small, undefined, or any number.
    UNUM32 Handle() { return Below(4) == 0 ? PDU_HANDLE_UNDEF : Number(); }
    /// One of a table's codes, or any number.
    UNUM32 Code(NameTable table);

    /// Null, or a string without line breaks.
    CHAR8* Text();
    /// A block of `size` bytes.
    UNUM8* Bytes(std::size_t size);

    template <class Record> Record* New(const Record& record)
    {
        void* const memory = NewMemory(sizeof record);
        std::memcpy(memory, &record, sizeof record);
        return static_cast<Record*>(memory);
    }
    /// A copy of a list in one block.
    template <class Entry> Entry* NewList(const Entry* entries, std::size_t count)
    {
        void* const memory = NewMemory(count * sizeof(Entry));
        if (count != 0)
            std::memcpy(memory, entries, count * sizeof(Entry));
        return static_cast<Entry*>(memory);
    }
    template <class Record> Record* NullOrNew(const Record& record) { return Coin() ? New(record) : nullptr; }

    PDU_FLAG_DATA FlagData();
    PDU_PARAM_ITEM ParamItem();
    PDU_PARAM_BYTEFIELD_DATA ByteField();
    PDU_PARAM_LONGFIELD_DATA LongField();
    PDU_PARAM_STRUCTFIELD_DATA StructField();
    PDU_UNIQUE_RESP_ID_TABLE_ITEM ResponseTable();
    PDU_RSC_DATA ResourceData();
    PDU_RSC_STATUS_ITEM ResourceStatus();
    PDU_RSC_ID_ITEM ResourceIds();
    PDU_RSC_ID_ITEM_DATA ResourceIdsOfModule();
    PDU_RSC_CONFLICT_ITEM Conflicts();
    PDU_MODULE_DATA Module();
    PDU_MODULE_ITEM Modules();
    PDU_IO_FILTER_LIST Filters();
    PDU_IO_VEHICLE_ID_REQUEST_DATA VehicleIdRequest();
    PDU_COP_CTRL_DATA ControlData();
    PDU_EVENT_ITEM EventItem();
    PDU_DATA_ITEM DataItem();
    PDU_VERSION_DATA Version();
    /// The data of an event item of this type, or null.
    void* EventData(T_PDU_IT itemType);

    /// The contents of all blocks so far.
    std::string Contents() const;
    /// With guarded memory, writing to any block so far crashes from now on.
    void ForbidWriting() const;

private:
    struct Block
    {
        std::shared_ptr<void> Memory;
        std::size_t Size;
    };

    void* NewMemory(std::size_t size);
    UNUM8* ByteList(UNUM32& count);
    template <class Entry, class Make> Entry* List(UNUM32& count, Make make);
    PDU_EXP_RESP_DATA ExpectedResponse();
    PDU_RESULT_DATA Result();
    PDU_IP_ADDR_INFO IpAddress();
    PDU_IO_FILTER_DATA Filter();
    void* ItemData(T_PDU_IT itemType);
    void* ParamValue(T_PDU_PT type);

    const std::uint8_t* next_;
    const std::uint8_t* end_;
    BlockMemory memory_;
    std::vector<Block> blocks_;
};

} // namespace marvane::testing
