#include "Tests/Shared_Tools/PVXExport/GltfReference.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>

#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>

namespace {

using nlohmann::json;
using Element = std::vector<double>;

const std::map<std::string, size_t> s_Widths = {{"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}, {"MAT4", 16}};

size_t SizeOf(int componentType) { return componentType == 5126 ? 4 : componentType == 5121 ? 1 : 2; }

template <class T>
double Load(const std::byte* pSource) {
    T value;
    std::memcpy(&value, pSource, sizeof value);
    return static_cast<double>(value);
}

double Load(const std::byte* pSource, int componentType) {
    switch (componentType) {
    case 5121:
        return Load<uint8_t>(pSource);
    case 5122:
        return std::max(Load<int16_t>(pSource) / 32767.0, -1.0);
    case 5123:
        return Load<uint16_t>(pSource);
    default:
        return Load<float>(pSource);
    }
}

template <class T>
void Store(std::vector<std::byte>& buffer, double value) {
    const T stored = static_cast<T>(value);
    const auto* pBytes = reinterpret_cast<const std::byte*>(&stored);
    buffer.insert(buffer.end(), pBytes, pBytes + sizeof stored);
}

Element Slerp(const Element& a, Element b, double t) {
    double dot = 0.0;
    for (size_t i = 0; i < 4; ++i)
        dot += a[i] * b[i];
    const double sign = dot < 0.0 ? -1.0 : 1.0;
    const double angle = std::acos(std::min(std::fabs(dot), 1.0));
    Element out(4);
    for (size_t i = 0; i < 4; ++i)
        out[i] = angle < 1e-9
                     ? a[i]
                     : (std::sin((1 - t) * angle) * a[i] + sign * std::sin(t * angle) * b[i]) / std::sin(angle);
    return out;
}

// Appendix C of the format: v0, its out-tangent b0, v1 and its in-tangent a1, and the time between.
Element Spline(const Element& v0, const Element& b0, const Element& a1, const Element& v1, double t, double span) {
    Element out(v0.size());
    for (size_t i = 0; i < v0.size(); ++i)
        out[i] = (2 * t * t * t - 3 * t * t + 1) * v0[i] + span * (t * t * t - 2 * t * t + t) * b0[i] +
                 (-2 * t * t * t + 3 * t * t) * v1[i] + span * (t * t * t - t * t) * a1[i];
    return out;
}

glm::dmat4 ToMatrix(const Element& t, const Element& r, const Element& s) {
    const double length = std::sqrt(r[0] * r[0] + r[1] * r[1] + r[2] * r[2] + r[3] * r[3]);
    const glm::dmat4 rotation = glm::mat4_cast(glm::dquat(r[3] / length, r[0] / length, r[1] / length, r[2] / length));
    return glm::translate(glm::dmat4(1.0), {t[0], t[1], t[2]}) * rotation *
           glm::scale(glm::dmat4(1.0), {s[0], s[1], s[2]});
}

} // namespace

size_t GltfFile::Add(const std::vector<double>& values, const std::string& type, int componentType) {
    while (buffer.size() % 4)
        buffer.push_back({});
    const size_t offset = buffer.size();
    for (const double value : values)
        if (componentType == 5121)
            Store<uint8_t>(buffer, value);
        else if (componentType == 5122)
            Store<int16_t>(buffer, std::round(value * 32767.0));
        else if (componentType == 5123)
            Store<uint16_t>(buffer, value);
        else
            Store<float>(buffer, value);
    json["bufferViews"].push_back({{"buffer", 0}, {"byteOffset", offset}, {"byteLength", buffer.size() - offset}});
    json["accessors"].push_back({{"bufferView", json["bufferViews"].size() - 1},
                                 {"componentType", componentType},
                                 {"count", values.size() / s_Widths.at(type)},
                                 {"type", type},
                                 {"normalized", componentType == 5122}});
    return json["accessors"].size() - 1;
}

void GltfFile::Write(const std::string& folder, const std::string& name) {
    json["buffers"] = {{{"uri", name + ".bin"}, {"byteLength", buffer.size()}}};
    std::ofstream(folder + "/" + name + ".gltf") << json;
    std::ofstream(folder + "/" + name + ".bin", std::ios::binary)
        .write(reinterpret_cast<const char*>(buffer.data()), static_cast<std::streamsize>(buffer.size()));
}

GltfReference::GltfReference(const GltfFile& file, int clip)
    : m_File(file), m_Clip(clip), m_Parents(file.json.at("nodes").size(), -1) {
    for (size_t i = 0; i < m_Parents.size(); ++i)
        for (const json& child : file.json["nodes"][i].value("children", json::array()))
            m_Parents[child.get<size_t>()] = static_cast<int>(i);
}

GltfReference::Elements GltfReference::Read(size_t accessor) const {
    const json& a = m_File.json["accessors"][accessor];
    const json& view = m_File.json["bufferViews"][a["bufferView"].get<size_t>()];
    const size_t width = s_Widths.at(a["type"].get<std::string>());
    const int componentType = a["componentType"].get<int>();
    const std::byte* pSource = m_File.buffer.data() + view["byteOffset"].get<size_t>();
    Elements elements(a["count"].get<size_t>(), Element(width));
    for (Element& element : elements)
        for (double& value : element) {
            value = Load(pSource, componentType);
            pSource += SizeOf(componentType);
        }
    return elements;
}

std::vector<double> GltfReference::Evaluate(size_t node, const char* pPath, double seconds, Element rest) const {
    if (m_Clip < 0)
        return rest;
    const json& animation = m_File.json["animations"][static_cast<size_t>(m_Clip)];
    for (const json& channel : animation["channels"]) {
        if (channel["target"]["node"].get<size_t>() != node || channel["target"]["path"] != pPath)
            continue;
        const json& sampler = animation["samplers"][channel["sampler"].get<size_t>()];
        const std::string kind = sampler.value("interpolation", "LINEAR");
        const Elements times = Read(sampler["input"].get<size_t>());
        const Elements values = Read(sampler["output"].get<size_t>());
        const bool isSpline = kind == "CUBICSPLINE";
        const auto valueOf = [&](size_t key) { return values[isSpline ? key * 3 + 1 : key]; };
        if (seconds <= times.front()[0])
            return valueOf(0);
        if (seconds >= times.back()[0])
            return valueOf(times.size() - 1);
        size_t key = 0;
        while (times[key + 1][0] <= seconds)
            ++key;
        const double span = times[key + 1][0] - times[key][0];
        const double t = (seconds - times[key][0]) / span;
        if (kind == "STEP")
            return valueOf(key);
        if (isSpline)
            return Spline(valueOf(key), values[key * 3 + 2], values[key * 3 + 3], valueOf(key + 1), t, span);
        if (std::string(pPath) == "rotation")
            return Slerp(valueOf(key), valueOf(key + 1), t);
        Element out = valueOf(key);
        for (size_t i = 0; i < out.size(); ++i)
            out[i] += (valueOf(key + 1)[i] - out[i]) * t;
        return out;
    }
    return rest;
}

glm::dmat4 GltfReference::GetLocal(size_t node, double seconds) const {
    const json& n = m_File.json["nodes"][node];
    if (n.contains("matrix"))
        return glm::make_mat4(n["matrix"].get<Element>().data());
    return ToMatrix(Evaluate(node, "translation", seconds, n.value("translation", Element{0, 0, 0})),
                    Evaluate(node, "rotation", seconds, n.value("rotation", Element{0, 0, 0, 1})),
                    Evaluate(node, "scale", seconds, n.value("scale", Element{1, 1, 1})));
}

glm::dmat4 GltfReference::GetWorld(size_t node, double seconds) const {
    const glm::dmat4 local = GetLocal(node, seconds);
    return m_Parents[node] < 0 ? local : GetWorld(static_cast<size_t>(m_Parents[node]), seconds) * local;
}

std::vector<glm::dvec3> GltfReference::GetVertices(size_t node, double seconds) const {
    const json& n = m_File.json["nodes"][node];
    const json& attributes = m_File.json["meshes"][n["mesh"].get<size_t>()]["primitives"][0]["attributes"];
    const Elements positions = Read(attributes["POSITION"].get<size_t>());
    std::vector<glm::dvec3> out;
    if (!n.contains("skin")) {
        for (const Element& p : positions)
            out.emplace_back(GetWorld(node, seconds) * glm::dvec4(p[0], p[1], p[2], 1.0));
        return out;
    }
    const json& skin = m_File.json["skins"][n["skin"].get<size_t>()];
    const Elements binds = Read(skin["inverseBindMatrices"].get<size_t>());
    std::vector<glm::dmat4> joints;
    for (size_t i = 0; i < binds.size(); ++i)
        joints.push_back(GetWorld(skin["joints"][i].get<size_t>(), seconds) * glm::make_mat4(binds[i].data()));
    const Elements bones = Read(attributes["JOINTS_0"].get<size_t>());
    const Elements weights = Read(attributes["WEIGHTS_0"].get<size_t>());
    for (size_t v = 0; v < positions.size(); ++v) {
        glm::dvec4 sum(0.0);
        double total = 0.0;
        for (size_t i = 0; i < 4; ++i) {
            const glm::dvec4 p(positions[v][0], positions[v][1], positions[v][2], 1.0);
            sum += weights[v][i] * (joints[static_cast<size_t>(bones[v][i])] * p);
            total += weights[v][i];
        }
        out.emplace_back(sum / total);
    }
    return out;
}
