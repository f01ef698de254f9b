// The decoders: each turns one record of the API into log lines. They read records and add to the text of a
// phase, nothing else; the caller writes the text out.
//
// A decoder is called unconditionally: its gate is tested before the first look at any pointer. Parameters
// come in one order: context, arrow, label, data. Records belong to the caller and are read during the call
// only. Decoders without a parameter for the arrow always use the same one, whatever the direction: log
// readers match these lines.
#pragma once

#include "line/arrows.h"
#include "logger/log/phase_text.h"
#include "pdu/code_names.h"
#include "pdu/pdu_api.h"

namespace marvane {

/// What every decoder gets: the levels that are in effect, and the text to add to.
struct DecoderContext
{
    UNUM32 CallsLevel;  ///< LogFnCalls
    UNUM32 DecodeLevel; ///< LogFnDecodeArgs for arguments, LogFnDecodeRsps for results
    PhaseText& Text;

    /// The gate of decoded lines: logging is active, calls show their arguments, decoding is on.
    bool IsOpen() const { return LoggingActive() && CallsLevel >= 2 && DecodeLevel != 0; }
};

/// The contexts of arguments and of results, with the settings as they are now.
DecoderContext ArgumentContext(PhaseText& text);
DecoderContext ResultContext(PhaseText& text);

/// Adds one decoded line: stamp, arrow, text with its line break. Has no gate but that of every statement.
template <class Format, class... Arguments>
void DecodeLine(const DecoderContext& context, Arrow arrow, Format format, const Arguments&... arguments)
{
    context.Text.AddArrow(arrow);
    context.Text.AddLine(format, arguments...);
}

/// The same, only if the gate of the context is open.
template <class Format, class... Arguments>
void GatedLine(const DecoderContext& context, Arrow arrow, Format format, const Arguments&... arguments)
{
    if (context.IsOpen())
        DecodeLine(context, arrow, format, arguments...);
}

/// A string of the application or the target library as the log shows it: "<NULL STRING>" for null.
inline const char* TextOrNull(const char* text)
{
    return text ? text : "<NULL STRING>";
}

/// Visits the entries of a list with index and address. For a null list, visits one null entry. Ends once the
/// buffer is full: further lines would be dropped anyway, and `count` may be any number.
template <class Entry, class Visit>
void ForEachEntry(const DecoderContext& context, const Entry* list, UNUM32 count, Visit visit)
{
    for (UNUM32 i = 0; i < count && context.Text.HasRoom(); ++i) {
        visit(i, list ? list + i : nullptr);
        if (!list)
            return;
    }
}

/// Hexadecimal and text listing of a buffer, 16 bytes a line, at most `limit` bytes of `size`. Reports an
/// empty or null buffer from level 1 on, lists bytes from level 2 on.
void DumpBuffer(const DecoderContext& context, Arrow arrow, const char* label, const UNUM8* data, UNUM32 size,
                UNUM32 limit);

// ComParams. A field's lines are one level deeper than `arrow`, but for those of a byte field.

void DecodeComParam(const DecoderContext& context, Arrow arrow, const PDU_PARAM_ITEM* item);
/// Tests LoggingActive() only; callers have tested the levels.
void DecodeParamValue(const DecoderContext& context, Arrow arrow, UNUM32 id, T_PDU_PT type, const void* data);
void DecodeByteField(const DecoderContext& context, Arrow arrow, UNUM32 id,
                     const PDU_PARAM_BYTEFIELD_DATA* field);
void DecodeLongField(const DecoderContext& context, Arrow arrow, UNUM32 id,
                     const PDU_PARAM_LONGFIELD_DATA* field);
void DecodeStructField(const DecoderContext& context, Arrow arrow, UNUM32 id,
                       const PDU_PARAM_STRUCTFIELD_DATA* field);
void DecodeSessionTiming(const DecoderContext& context, Arrow arrow,
                         const PDU_PARAM_STRUCT_SESSION_TIMING* timing);
void DecodeAccessTiming(const DecoderContext& context, Arrow arrow,
                        const PDU_PARAM_STRUCT_ACCESS_TIMING* timing);

/// The table of unique response identifiers.
void DecodeUniqueRespIdTable(const DecoderContext& context, Arrow arrow,
                             const PDU_UNIQUE_RESP_ID_TABLE_ITEM* table);

// Vehicles and network entities.

void DecodeVehicleIdRequest(const DecoderContext& context, Arrow arrow,
                            const PDU_IO_VEHICLE_ID_REQUEST_DATA* item);
void DecodeVehicleIdRequestEx(const DecoderContext& context, Arrow arrow,
                              const PDU_IO_VEHICLE_ID_REQUEST_EX* item);
void DecodeEthSwitchState(const DecoderContext& context, const PDU_IO_ETH_SWITCH_STATE_DATA* item);
void DecodeEntityAddress(const DecoderContext& context, const PDU_IO_ENTITY_ADDRESS_DATA* item);
void DecodeEntityStatus(const DecoderContext& context, const PDU_IO_ENTITY_STATUS_DATA* item);

// Resources and modules: single records, as items and lists have them.

void DecodeRscData(const DecoderContext& context, const char* label, const PDU_RSC_DATA* data);
void DecodeRscIdList(const DecoderContext& context, Arrow arrow, const char* label,
                     const PDU_RSC_ID_ITEM_DATA* entry);
void DecodeRscConflictList(const DecoderContext& context, const PDU_RSC_CONFLICT_DATA* entry);
void DecodeModuleData(const DecoderContext& context, Arrow arrow, const PDU_MODULE_DATA* entry);
/// `item` must not be null.
void DecodeModuleIdList(const DecoderContext& context, const PDU_MODULE_ITEM* item);

// Resources and modules: whole lists, as calls take and return them.

/// True if the lists of PDUGetResourceIds and PDUGetConflictingResources are shown at all: only LogEnabled 1
/// does so, logging that is active for another reason does not.
bool ShowsResourceLists();
void DecodeInputModules(const DecoderContext& context, const PDU_MODULE_ITEM& modules);
/// `list` must not be null. The entries are shown at the level of arguments, though they are results.
void DecodeResourceIdResult(PhaseText& text, PDU_RSC_ID_ITEM** list);
void DecodeConflictResult(PhaseText& text, PDU_RSC_CONFLICT_ITEM** list);
void DecodeResourceStatusEntries(const DecoderContext& context, Arrow arrow, const PDU_RSC_STATUS_ITEM& item);

void DecodeFilterList(const DecoderContext& context, Arrow arrow, const PDU_IO_FILTER_LIST* list);

// Events and ComPrimitives.

/// The bytes of flags, and the name of each bit that is set.
void DecodeFlagData(const DecoderContext& context, Arrow arrow, const char* label, const PDU_FLAG_DATA* flags,
                    const BitNames& names);
/// What an event item holds, its lines one level deep.
void DecodeEventItem(const DecoderContext& context, T_PDU_IT itemType, const void* data);
/// An item that PDUGetEventItem returned.
void DecodeFetchedEvent(const DecoderContext& context, const PDU_EVENT_ITEM* item);
/// Control data of a ComPrimitive about to start.
void DecodeCopCtrlData(const DecoderContext& context, const PDU_COP_CTRL_DATA* control);
/// Control data and payload of a ComPrimitive about to start. Only LogEnabled 1 shows them: logging that is
/// active for another reason shows the entry line alone.
void DecodeComPrimitive(const DecoderContext& context, const PDU_COP_CTRL_DATA* control, const UNUM8* data,
                        UNUM32 size);

/// A generic item, whatever it holds.
void DecodeItem(const DecoderContext& context, Arrow arrow, const char* label, const PDU_DATA_ITEM* item);

/// A parameter of a comms report.
void DecodeCommsParameter(const DecoderContext& context, Arrow arrow, const LogParameter& parameter);

// Results that calls write to variables of the application.

void DecodeVersionData(const DecoderContext& context, const PDU_VERSION_DATA& data);
/// A number that came back, or that there was no variable for it. `label` is the name with its padding.
void DecodeWrittenBack(const DecoderContext& context, const char* label, const char* name,
                       const UNUM32* value);

} // namespace marvane
