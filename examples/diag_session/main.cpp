// A sample diagnostic application: one workshop session on the D-PDU API library that is named.
#include <cstdio>
#include <cstring>

#include "examples/diag_session/session.h"

namespace {

constexpr const char* Usage =
    "Usage: diag_session --library PATH [--quiet]\n"
    "\n"
    "Runs a workshop session on a D-PDU API library (ISO 22900-2) and prints what it found:\n"
    "modules, resources, ComParams, identification, trouble codes, a routine, a short\n"
    "download, tester present, and vehicle identification over DoIP. The session is written\n"
    "for the simulated interface SimVci.\n"
    "\n"
    "  --library PATH  the library to load\n"
    "  --quiet         print errors only\n"
    "  --help          this text\n"
    "\n"
    "Exit status: 0 if the session succeeded, 1 if not, 2 for wrong options.\n";

/// The whole session from PDUConstruct to PDUDestruct.
void RunSession(const diag::Api& api, bool quiet)
{
    diag::Session session(api, quiet);
    CHAR8 options[] = "";
    session.Expect("PDUConstruct", api.PDUConstruct(options, &session));
    session.Expect("PDURegisterEventCallback",
                   api.PDURegisterEventCallback(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, diag::Session::OnEvent));
    IdentifyModule(session);
    ShowResources(session);
    const UNUM32 hCLL =
        OpenLink(session, "ISO_11898_2_DWCAN", "ISO_15765_3_on_ISO_15765_2",
                 {{6, session.IdOf(PDU_OBJT_PINTYPE, "HI")}, {14, session.IdOf(PDU_OBJT_PINTYPE, "LOW")}});
    UseParameters(session, hCLL);
    ShareResource(session, hCLL);
    Diagnose(session, hCLL);
    UseModuleCommands(session, hCLL);
    CloseLink(session, hCLL);
    UseDoIP(session);
    ResetModule(session);
    session.Expect("PDUModuleDisconnect", api.PDUModuleDisconnect(session.Module));
    session.Expect("PDUDestruct", api.PDUDestruct());
    session.Say("Session ended.");
}

} // namespace

int main(int argc, char** argv)
{
    const char* library = nullptr;
    bool quiet = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs(Usage, stdout);
            return 0;
        }
        if (std::strcmp(argv[i], "--quiet") == 0)
            quiet = true;
        else if (std::strcmp(argv[i], "--library") == 0 && i + 1 < argc)
            library = argv[++i];
        else if (std::strcmp(argv[i], "--library") == 0) {
            std::fprintf(stderr, "diag_session: --library needs a path\n\n%s", Usage);
            return 2;
        } else {
            std::fprintf(stderr, "diag_session: unknown option %s\n\n%s", argv[i], Usage);
            return 2;
        }
    }
    if (!library) {
        std::fprintf(stderr, "diag_session: --library is missing\n\n%s", Usage);
        return 2;
    }
    try {
        RunSession(diag::LoadApi(library), quiet);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "diag_session: %s\n", failure.what());
        return 1;
    }
}
