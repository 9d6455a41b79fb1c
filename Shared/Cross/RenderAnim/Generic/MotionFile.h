#pragma once

class ByteStream;
class RenderModel;

namespace ra {

// The motion side of a generic model, ".ebp", in a file beside it: the animations that it takes from other models,
// events, clauses, conditions, modifiers, motions, actions, and how it is picked.

// False, with a line in the log, when that fails; what stood under the path is still there then.
bool SaveMotionFile(const RenderModel& model, const char* pPath);
// The same into a stream that the caller has opened. Throws what Chunky throws, and std::runtime_error when the stream
// doesn't take all.
void WriteMotionFile(ByteStream& stream, const RenderModel& model);

// Into the model that the file lies beside. False, with a line in the log, when they make no sense together; a damaged
// or newer file throws Chunky::Exception or ByteStream::Exception. The model is of no use then.
bool ReadMotionFile(ByteStream& stream, RenderModel& model);

} // namespace ra
