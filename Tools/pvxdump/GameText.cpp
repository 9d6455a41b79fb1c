#include "Tools/pvxdump/GameText.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Tools/pvxdump/GameLoad.h"
#include "Tools/pvxdump/ModelNames.h"
#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextTable.h"

namespace {

using enum TextTable::Align;
using TextFormat::Count;
using TextFormat::Name;
using TextFormat::Number;
using TextFormat::Vector;

constexpr const char* s_StandsIn = "missing, has a stand-in";

std::string NameOf(const Inv::NamedResource& resource) { return Name(resource.GetName() ? resource.GetName() : ""); }

std::string NameOf(const ra::Name& name) { return Name(name.GetTextOrEmpty()); }

std::string FormatSize(const Texture& texture) {
    return std::to_string(texture.GetWidth()) + "x" + std::to_string(texture.GetHeight());
}

// All textures of the group's shaders, each once, in the order in which they are met.
std::vector<const Texture*> CollectUsedTextures(const ra::MeshGroup& group) {
    std::vector<const Texture*> textures;
    for (uint32_t i = 0; i < group.GetShaderCount(); ++i)
        for (uint32_t n = 0; n < ChannelCount; ++n) {
            const Texture* pTexture = group.GetShader(i)->GetChannelTexture(n).GetData();
            if (pTexture && std::ranges::find(textures, pTexture) == textures.end())
                textures.push_back(pTexture);
        }
    return textures;
}

// Adds up what is missing on its way.
class Printer {
public:
    Printer(std::string& out, const GameLoad& load)
        : m_Out(out), m_Load(load), m_Model(load.GetModel()), m_Group(*m_Model.GetMeshGroup()) {}

    void Print() {
        std::string sections;
        PrintMeshes(sections);
        PrintShaders(sections);
        PrintTextures(sections);
        PrintAnimations(sections);
        PrintMarkers(sections);
        PrintCameras(sections);
        PrintWarnings(sections);
        m_Out += "loaded as " + Name(m_Load.GetName()) + ", model \"" + NameOf(m_Model) + "\"\n";
        PrintTotals();
        m_Out += sections;
    }

private:
    void PrintTotals() {
        const Skeleton* pSkeleton = m_Model.GetSkeleton();
        m_Out += Count(m_Group.GetMeshCount(), "mesh", "meshes") + ", " + Count(m_VertexCount, "vertex", "vertices") +
                 ", " + Count(m_Group.GetPolyCount(ra::Mesh::Poly_High), "triangle", "triangles") + ", " +
                 Count(pSkeleton ? pSkeleton->GetBoneCount() : 0, "bone", "bones") + ", " +
                 Count(m_Model.GetAnimList()->GetCount(), "animation", "animations") + ", " +
                 Count(m_Group.GetShaderCount(), "shader", "shaders") + ", " +
                 Count(m_TextureCount, "texture", "textures") + ", " +
                 Count(m_Model.GetOwnMarkers().size(), "marker", "markers") + ", " +
                 Count(m_Model.GetCameraCount(), "camera", "cameras") + "; " +
                 (m_MissingCount == 0 ? "nothing is" : Count(m_MissingCount, "thing is", "things are")) + " missing\n";
    }

    void PrintMeshes(std::string& out) {
        TextTable table({{"mesh"},
                         {"vertices", Right},
                         {"triangles", Right},
                         {"low level", Right},
                         {"shaders", Right},
                         {"bones", Right},
                         {"of model"}});
        for (uint32_t i = 0; i < m_Group.GetMeshCount(); ++i)
            table.AddRow(MakeMeshRow(i));
        table.PrintSection(out, "meshes");
    }
    std::vector<std::string> MakeMeshRow(uint32_t index) {
        const std::string name = NameOf(m_Group.GetMeshName(index));
        const ra::Mesh* pMesh = m_Group.GetMesh(index).GetData();
        std::string model = m_Group.IsLocal(index) ? "-" : NameOf(m_Group.GetXRefName(index));
        if (m_Load.IsMeshMissing(m_Group, index)) {
            model += std::string(", ") + (pMesh ? s_StandsIn : "missing");
            ++m_MissingCount;
        }
        if (!pMesh)
            return {name, "", "", "", "", "", model};
        const gz::VertexSet* pVertices = pMesh->GetVertexSet(ra::Mesh::Poly_High);
        const uint32_t vertexCount = pVertices ? pVertices->GetSize() : 0;
        m_VertexCount += vertexCount;
        return {name,
                Count(vertexCount),
                Count(pMesh->GetPolyCount(ra::Mesh::Poly_High)),
                Count(pMesh->GetPolyCount(ra::Mesh::Poly_Low)),
                Count(pMesh->GetShaderCount()),
                Count(pMesh->GetSkinnedTransformCount()),
                model};
    }

    void PrintShaders(std::string& out) {
        TextTable table({{"shader"}, {"from"}, {"channel"}, {"texture"}, {"size", Right}});
        for (uint32_t i = 0; i < m_Group.GetShaderCount(); ++i)
            AddShaderRows(table, *m_Group.GetShader(i).GetData());
        table.PrintSection(out, "shaders");
    }
    void AddShaderRows(TextTable& table, const Shader& shader) {
        std::string name = NameOf(shader);
        std::string from = DescribeOrigin(shader);
        const auto addRow = [&](const char* pChannel, const std::string& texture, const std::string& size) {
            table.AddRow({std::exchange(name, {}), std::exchange(from, {}), pChannel, texture, size});
        };
        for (uint32_t n = 0; n < ChannelCount; ++n)
            if (const Texture* pTexture = shader.GetChannelTexture(n).GetData())
                addRow(s_ChannelNames[n], NameOf(*pTexture), FormatSize(*pTexture));
        for (const std::string& missing : m_Load.GetMissingTextures(shader)) {
            addRow("-", Name(missing), "missing, is pink");
            ++m_MissingCount;
        }
        if (!name.empty())
            addRow("-", "-", "");
    }
    std::string DescribeOrigin(const Shader& shader) {
        if (!m_Load.IsMissing(shader))
            return shader.IsShared() ? "its own file" : "the model";
        ++m_MissingCount;
        return s_StandsIn;
    }

    void PrintTextures(std::string& out) {
        TextTable table({{"texture"}, {"size", Right}, {"type"}, {"levels", Right}, {"bytes", Right}});
        for (const Texture* pTexture : CollectUsedTextures(m_Group)) {
            ++m_TextureCount;
            table.AddRow({NameOf(*pTexture), FormatSize(*pTexture), GetTextureTypeName(pTexture->GetType()),
                          Count(pTexture->GetLevelCount()), Count(pTexture->GetSize())});
        }
        table.PrintSection(out, "textures");
    }

    void PrintAnimations(std::string& out) const {
        TextTable table({{"animation"}, {"frames", Right}, {"seconds", Right}, {"bones", Right}, {"of model"}});
        const AnimList& list = *m_Model.GetAnimList();
        for (uint32_t i = 0; i < list.GetCount(); ++i) {
            const AnimListNode& node = *list.GetNode(i);
            const Anim& anim = *node.GetAnim().GetData();
            table.AddRow({NameOf(anim), std::to_string(anim.GetFrameCount()),
                          Number(static_cast<double>(anim.GetDuration()), 3), CountAnimatedBones(anim),
                          node.IsLocal() ? "-" : NameOf(node.GetXRefModel())});
        }
        table.PrintSection(out, "animations");
    }
    static std::string CountAnimatedBones(const Anim& anim) {
        uint32_t count = 0;
        for (uint32_t i = 0; i < anim.GetBoneCount(); ++i)
            count += anim.GetBone(static_cast<int32_t>(i)).isAnimated ? 1 : 0;
        return Count(count) + " of " + Count(anim.GetBoneCount());
    }

    void PrintMarkers(std::string& out) const {
        TextTable table({{"marker"}, {"parent bone"}, {"position"}});
        for (const Marker& marker : m_Model.GetOwnMarkers())
            table.AddRow({NameOf(marker.name), marker.m_parentName.IsValid() ? NameOf(marker.m_parentName) : "-",
                          Vector(marker.m_transform[3])});
        table.PrintSection(out, "markers");
    }

    void PrintCameras(std::string& out) const {
        TextTable table({{"camera"}, {"position"}, {"target"}});
        for (const CameraDef& camera : m_Model.GetCameras())
            table.AddRow({NameOf(camera.name), Vector(camera.position), Vector(camera.target)});
        table.PrintSection(out, "cameras");
    }

    void PrintWarnings(std::string& out) const {
        if (m_Load.GetWarnings().empty())
            return;
        out += "\nwhat the loading had to say\n";
        for (const std::string& warning : m_Load.GetWarnings())
            out += "  " + Name(warning) + '\n';
    }

    std::string& m_Out;
    const GameLoad& m_Load;
    const RenderModel& m_Model;
    const ra::MeshGroup& m_Group;
    uint64_t m_VertexCount = 0;
    size_t m_TextureCount = 0;
    size_t m_MissingCount = 0;
};

} // namespace

void PrintLoaded(std::string& out, const GameLoad& load) { Printer(out, load).Print(); }
