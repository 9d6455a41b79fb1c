#pragma once

// The script listener's text output.

class CharStream {
public:
    virtual ~CharStream();
    // Puts the text as it stands; a line end belongs to the text.
    virtual void puts(const char* pText) = 0;
};

// The state of the script engine in one thread.
struct ScriptThreadLocals {
    CharStream* current_stdout = nullptr; // the listener's stream, borrowed; null when there is no listener
};

// The calling thread's.
ScriptThreadLocals& thread_locals();

// Puts a text on the calling thread's listener. Without a listener the text is dropped.
void PutListenerText(const char* pText);
