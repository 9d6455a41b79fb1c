#pragma once

class ByteStream;
class Chunky;
class Pattern;

// Pattern files on streams that the caller has opened; see Pattern::Load and Pattern::Save for files.
namespace PatternLoad {

// A new pattern's content, in any of the forms that were ever written. A damaged or newer file throws Chunky::Exception
// or ByteStream::Exception; the pattern is of no use then.
void Read(ByteStream& stream, Pattern& pattern);
// The same from a file that may hold more: the pattern is the next chunk of its kind.
void Read(Chunky& chunky, Pattern& pattern);
// Throws std::runtime_error when the stream doesn't take all.
void Write(ByteStream& stream, const Pattern& pattern);
// Into a file that holds more; whoever opened it asks its Flush at the end.
void Write(Chunky& chunky, const Pattern& pattern);

} // namespace PatternLoad
