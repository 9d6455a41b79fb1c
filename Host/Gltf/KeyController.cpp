#include "Host/Gltf/KeyController.h"

namespace gltf {

namespace {

// The rows of transformations at two times.
struct MatrixPair {
    struct Row {
        Pair x, y, z;
    };
    Row rows[4];
};

// Animations hide parts by a scale of 0, in which the axes would lose their directions, and all that hangs on the node
// its place. This little is hidden as well.
constexpr double s_LeastScale = 1e-6;

Pair KeepFromZero(Pair scale) {
    const Pair least = scale < 0.0 ? Pair{-s_LeastScale, -s_LeastScale} : Pair{s_LeastScale, s_LeastScale};
    return scale > -s_LeastScale && scale < s_LeastScale ? least : scale;
}

// What ComposeTransform gives, operation by operation.
MatrixPair Compose(const KeyRun& translation, const KeyRun& rotation, const KeyRun& scale, size_t i) {
    const Pair x = rotation[0][i], y = rotation[1][i], z = rotation[2][i], w = rotation[3][i];
    const Pair squared = x * x + y * y + z * z + w * w;
    const Pair s = squared > 0.0 ? 2.0 / squared : Pair{};
    const Pair xx = s * x * x, yy = s * y * y, zz = s * z * z;
    const Pair xy = s * x * y, yz = s * y * z, zx = s * z * x;
    const Pair wx = s * w * x, wy = s * w * y, wz = s * w * z;
    const Pair scaleX = KeepFromZero(scale[0][i]);
    const Pair scaleY = KeepFromZero(scale[1][i]);
    const Pair scaleZ = KeepFromZero(scale[2][i]);
    return {{{(1.0 - yy - zz) * scaleX, (xy + wz) * scaleX, (zx - wy) * scaleX},
             {(xy - wz) * scaleY, (1.0 - zz - xx) * scaleY, (yz + wx) * scaleY},
             {(zx + wy) * scaleZ, (yz - wx) * scaleZ, (1.0 - xx - yy) * scaleZ},
             {translation[0][i], translation[1][i], translation[2][i]}}};
}

// As ToHostAxes does it with one.
void ChangeAxes(MatrixPair& m, AxesChange change) {
    if (change.ownSide) {
        const MatrixPair::Row y = m.rows[1];
        m.rows[1] = {-m.rows[2].x, -m.rows[2].y, -m.rows[2].z};
        m.rows[2] = y;
    }
    if (change.parentSide)
        for (MatrixPair::Row& row : m.rows)
            row = {row.x, -row.z, row.y};
}

scene::Affine GetMatrix(const MatrixPair& pair, size_t lane) {
    scene::Affine m;
    for (int row = 0; row < 4; ++row)
        m[row] = {pair.rows[row].x[lane], pair.rows[row].y[lane], pair.rows[row].z[lane]};
    return m;
}

KeyValue ToKeyValue(const glm::dvec3& v) { return {v.x, v.y, v.z, 0.0}; }

KeyRun EvaluateTrack(std::optional<KeySampler>& sampler, const KeyValue& rest, std::span<const TimeValue> times) {
    KeyRun run;
    for (size_t i = 0; i < run.size(); ++i)
        run[i].fill(Pair{rest[i], rest[i]});
    if (sampler)
        sampler->Evaluate(times, run);
    return run;
}

} // namespace

KeyController::KeyController(Class_ID classId, std::shared_ptr<const BufferStore> pBuffers, const NodeTransform& rest,
                             const NodeTracks& tracks, AxesChange change)
    : Controller(classId), m_pBuffers(std::move(pBuffers)), m_Rest(rest), m_Change(change) {
    if (tracks.translation)
        m_Translation.emplace(*tracks.translation, 3u);
    if (tracks.rotation)
        m_Rotation.emplace(*tracks.rotation, 4u);
    if (tracks.scale)
        m_Scale.emplace(*tracks.scale, 3u);
}

scene::Affine KeyController::Evaluate(TimeValue t) const {
    scene::Affine local;
    EvaluateRun(std::span(&t, 1), &local);
    return local;
}

// An animated node has no matrix; where a file gives it one all the same, the tracks start from nothing.
void KeyController::EvaluateRun(std::span<const TimeValue> times, scene::Affine* pLocals) const {
    const glm::dquat& turn = m_Rest.rotation;
    const KeyRun translation = EvaluateTrack(m_Translation, ToKeyValue(m_Rest.translation), times);
    const KeyRun rotation = EvaluateTrack(m_Rotation, {turn.x, turn.y, turn.z, turn.w}, times);
    const KeyRun scale = EvaluateTrack(m_Scale, ToKeyValue(m_Rest.scale), times);
    for (size_t i = 0; i < times.size(); i += 2) {
        MatrixPair pair = Compose(translation, rotation, scale, i / 2);
        ChangeAxes(pair, m_Change);
        *pLocals++ = GetMatrix(pair, 0);
        if (i + 1 < times.size())
            *pLocals++ = GetMatrix(pair, 1);
    }
}

} // namespace gltf
