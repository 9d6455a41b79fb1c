#include "Host/Sdk/Listener.h"

ScriptThreadLocals& thread_locals() {
    static thread_local ScriptThreadLocals s_Locals;
    return s_Locals;
}

void PutListenerText(const char* pText) {
    if (CharStream* pStream = thread_locals().current_stdout)
        pStream->puts(pText);
}
