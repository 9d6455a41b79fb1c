#pragma once

#include <cstddef>
#include <vector>

#include "Shared/Cross/Glaze/MemoryVertexSet.h"
#include "Shared/Cross/Glaze/PrimSet.h"
#include "Shared/Cross/Glaze/Shader.h"
#include "Shared/Cross/Glaze/Texture.h"

namespace gz {

// What the null device makes: objects that hold what they are given.

class NullVertexSet : public MemoryVertexSet {};

class NullPrimSet : public PrimSet {
public:
    NullPrimSet(VertexSet& vertexSet, std::shared_ptr<Shader> pShader, uint32_t usage);
    void SetUp(uint32_t rangeId, uint32_t indexCount, PrimKind kind) override;
    void SetUp(uint32_t rangeId, std::vector<uint16_t> indices, PrimKind kind) override;
    void SetIndices(std::span<const uint16_t> indices) override;
    std::span<uint16_t> LockIndices() override { return m_Indices; }
    std::span<const uint16_t> GetIndices() const override { return m_Indices; }
    void CopyFrom(const PrimSet& other) override;
    VertexSet& GetVertexSet() const override { return m_VertexSet; }
    Shader* GetShader() const override { return m_pShader.get(); }
    uint32_t GetUsage() const override { return m_Usage; }
    uint32_t GetRangeId() const override { return m_RangeId; }
    VertexRange GetRange() const override { return m_Range; }
    PrimKind GetKind() const override { return m_Kind; }
    void Display() override {}

private:
    VertexSet& m_VertexSet;
    std::shared_ptr<Shader> m_pShader;
    uint32_t m_Usage;
    VertexRange m_Range;
    PrimKind m_Kind = PrimKind_TriangleList;
    std::vector<uint16_t> m_Indices;
    uint32_t m_RangeId = 0;
};

class NullShader : public Shader {
public:
    float GetShininess() const override { return m_Shininess; }
    void SetShininess(float shininess) override { m_Shininess = shininess; }
    bool IsSupersampled() const override { return m_Supersample; }
    void SetSupersample(bool supersample) override { m_Supersample = supersample; }

private:
    float m_Shininess = 0.0f;
    bool m_Supersample = false;
};

class NullTexture : public Texture {
public:
    bool Create(uint32_t width, uint32_t height, uint32_t format, uint32_t levelCount) override;
    uint32_t GetWidth() const override { return m_Width; }
    uint32_t GetHeight() const override { return m_Height; }
    uint32_t GetFormat() const override { return m_Format; }
    uint32_t GetLevelCount() const override { return static_cast<uint32_t>(m_Levels.size()); }
    bool SetLevel(uint32_t level, std::span<const std::byte> data) override;
    bool ShareLevel(uint32_t level, std::span<const std::byte> data, std::shared_ptr<const void> pOwner) override;
    std::span<const std::byte> GetLevel(uint32_t level) const override;

private:
    uint32_t m_Width = 0;
    uint32_t m_Height = 0;
    uint32_t m_Format = 0;
    struct Level {
        std::span<const std::byte> data;
        std::shared_ptr<const void> pOwner;
    };
    std::vector<Level> m_Levels;
};

class NullShaderCompiler : public ShaderCompiler {
public:
    bool Compile(Shader&) override { return false; }
};

} // namespace gz
