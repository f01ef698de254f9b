// The decoders: each turns one record of the API into log lines. They read records and append to the
// log buffer, nothing else; the caller writes the buffer out.
//
// A decoder is called unconditionally; its gate (logging active, CallsLevel 2 or more, DecodeLevel not 0)
// stands before the first look at any pointer. Directions: 0 towards the target library, 1 back from it.
// Levels count the nesting from 0.
#pragma once

#include <cstring>

#include "logger/log/log_buffer.h"
#include "pdu/code_names.h"
#include "pdu/pdu_api.h"

namespace marvane {

/// What every decoder gets: the levels in force, where the text goes, and the time of its stamps.
struct DecoderFrame
{
    UNUM32 CallsLevel;  ///< LogFnCalls
    UNUM32 DecodeLevel; ///< LogFnDecodeArgs on the way in, LogFnDecodeRsps on the way back
    LogBuffer& Text;
    FrameTime Time;

    /// The gate of decoded lines.
    bool IsOpen() const { return LoggingActive() && CallsLevel >= 2 && DecodeLevel != 0; }
};

/// Indents of decoded lines by direction times 4 plus level. Deep nesting runs past the eight arrows:
/// the last three texts are what stands there then.
inline constexpr std::array<std::string_view, 11> IndentTable = {
    "   -->  ",   "    >>> ",   "\t\t -->  ",      "\t\t  >>> ", "   <--  ", "    <<< ",
    "\t\t <--  ", "\t\t  <<< ", marks::BufferFull, "",           ""};

inline constexpr int DirectionIn = 0;
inline constexpr int DirectionOut = 1;

constexpr std::size_t IndentIndex(int direction, int level)
{
    return static_cast<std::size_t>(direction) * 4 + static_cast<std::size_t>(level);
}

/// One decoded line: stamp, indent, text with its line end. Needs logging active and room, no level.
template <class Format, class... Arguments>
void DecodeLine(const DecoderFrame& frame, std::string_view indent, Format format,
                const Arguments&... arguments)
{
    LogIndented(frame.Text, frame.Time, indent);
    LogAppendLine(frame.Text, format, arguments...);
}

template <class Format, class... Arguments>
void DecodeLine(const DecoderFrame& frame, std::size_t indent, Format format, const Arguments&... arguments)
{
    DecodeLine(frame, IndentTable[indent], format, arguments...);
}

/// Text of a pointer to characters from the other side: "<NULL STRING>" for null.
inline const char* TextOrNull(const char* text)
{
    return text ? text : "<NULL STRING>";
}

/// Text in a place of fixed size, up to its terminator if it has one.
inline std::string_view BoundedText(const CHAR8* text, std::size_t size)
{
    const void* const end = std::memchr(text, 0, size);
    return {text, end ? static_cast<std::size_t>(static_cast<const CHAR8*>(end) - text) : size};
}

/// Visits the entries of a list of the other side with index and address. A null list shows its first entry,
/// as null, and has no others. Ends once the buffer takes no more: what follows would not be seen.
template <class Entry, class Visit>
void ForEachEntry(const DecoderFrame& frame, const Entry* list, UNUM32 count, Visit visit)
{
    for (UNUM32 i = 0; i < count && frame.Text.HasRoom(); ++i) {
        visit(i, list ? list + i : nullptr);
        if (!list)
            return;
    }
}

/// Hexadecimal and text listing of a buffer, 16 bytes a line, at most `limit` bytes of `size`. Reports an
/// empty or null buffer from level 1 on, lists bytes from level 2 on.
void DumpBuffer(const DecoderFrame& frame, int direction, int level, const char* label, const UNUM8* data,
                UNUM32 size, UNUM32 limit);

void DecodeComParam(const DecoderFrame& frame, const PDU_PARAM_ITEM* item, int direction, int level);
/// Only logging active is its gate: its caller has passed the rest.
void DecodeParamValue(const DecoderFrame& frame, UNUM32 id, T_PDU_PT type, const void* data, int direction,
                      int level);
void DecodeByteField(const DecoderFrame& frame, int direction, int level, UNUM32 id,
                     const PDU_PARAM_BYTEFIELD_DATA* field);
void DecodeLongField(const DecoderFrame& frame, int direction, int level, UNUM32 id,
                     const PDU_PARAM_LONGFIELD_DATA* field);
void DecodeStructField(const DecoderFrame& frame, int direction, int level, UNUM32 id,
                       const PDU_PARAM_STRUCTFIELD_DATA* field);
void DecodeSessionTiming(const DecoderFrame& frame, int direction, int level,
                         const PDU_PARAM_STRUCT_SESSION_TIMING* timing);
void DecodeAccessTiming(const DecoderFrame& frame, int direction, int level,
                        const PDU_PARAM_STRUCT_ACCESS_TIMING* timing);

void DecodeUniqueRespIdTable(const DecoderFrame& frame, const PDU_UNIQUE_RESP_ID_TABLE_ITEM* table,
                             int direction, int level);

void DecodeVehicleIdRequest(const DecoderFrame& frame, const PDU_IO_VEHICLE_ID_REQUEST_DATA* item,
                            int direction);
void DecodeVehicleIdRequestEx(const DecoderFrame& frame, const PDU_IO_VEHICLE_ID_REQUEST_EX* item,
                              int direction);
void DecodeEthSwitchState(const DecoderFrame& frame, const PDU_IO_ETH_SWITCH_STATE_DATA* item);
void DecodeEntityAddress(const DecoderFrame& frame, const PDU_IO_ENTITY_ADDRESS_DATA* item);
void DecodeEntityStatus(const DecoderFrame& frame, const PDU_IO_ENTITY_STATUS_DATA* item);

/// The arrow is always the outgoing one.
void DecodeRscData(const DecoderFrame& frame, const PDU_RSC_DATA* data, const char* label);
void DecodeRscIdList(const DecoderFrame& frame, const PDU_RSC_ID_ITEM_DATA* entry, const char* label,
                     int direction);
void DecodeRscConflictList(const DecoderFrame& frame, const PDU_RSC_CONFLICT_DATA* entry);
void DecodeModuleData(const DecoderFrame& frame, const PDU_MODULE_DATA* entry, int direction);
/// The item is read without a test for null.
void DecodeModuleIdList(const DecoderFrame& frame, const PDU_MODULE_ITEM* item);

void DecodeFilterList(const DecoderFrame& frame, int direction, const PDU_IO_FILTER_LIST* list);

void DecodeFlagData(const DecoderFrame& frame, const PDU_FLAG_DATA* flags, const char* label, int direction,
                    int level, const BitNames& names);
/// Every line of its own has the arrow of a result, one level deep.
void DecodeEventItem(const DecoderFrame& frame, T_PDU_IT itemType, const void* data);

/// Control data of a ComPrimitive about to start.
void DecodeCopCtrlData(const DecoderFrame& frame, const PDU_COP_CTRL_DATA* control);

/// Prints a generic item, whatever it holds.
void DecodeItem(const DecoderFrame& frame, const char* label, const PDU_DATA_ITEM* item, int direction);

} // namespace marvane
