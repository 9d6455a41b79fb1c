#include "Tools/pvxdump/AnimText.h"

#include <algorithm>

#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Tools/pvxdump/AnimNames.h"
#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextTable.h"

namespace {

using enum TextTable::Align;
using TextFormat::Count;
using TextFormat::Name;
using TextFormat::Number;

// The counts of a kind of stream, which mostly are one number.
class KeyCounts {
public:
    void Add(uint32_t count) {
        m_Least = std::min(m_Least, count);
        m_Most = std::max(m_Most, count);
    }
    std::string GetText() const {
        if (m_Least > m_Most)
            return "-";
        return m_Least == m_Most ? Count(m_Least) : Count(m_Least) + " to " + Count(m_Most);
    }

private:
    uint32_t m_Least = UINT32_MAX;
    uint32_t m_Most = 0;
};

void AddKeyCounts(KeyCounts& keyCounts, const Anim& anim, int32_t bone) {
    if (const auto* pInterm = dynamic_cast<const AnimInterm*>(&anim)) {
        keyCounts.Add(GetKeyCount(pInterm->GetMatrixStream(bone)));
        return;
    }
    keyCounts.Add(GetKeyCount(anim.GetBone(bone).pPosition.get()));
    keyCounts.Add(GetKeyCount(anim.GetBone(bone).pRotation.get()));
}

std::string FormatBounds(const std::optional<ra::AnimBounds>& bounds) {
    return bounds ? TextFormat::Vector(bounds->minimum) + " to " + TextFormat::Vector(bounds->maximum) : "-";
}

std::vector<std::string> MakeRow(const AnimationContent& content) {
    const Anim& anim = *content.pAnim;
    uint32_t animatedCount = 0;
    KeyCounts keyCounts;
    for (uint32_t i = 0; i < anim.GetBoneCount(); ++i) {
        const auto index = static_cast<int32_t>(i);
        animatedCount += anim.GetBone(index).isAnimated ? 1 : 0;
        AddKeyCounts(keyCounts, anim, index);
    }
    return {Name(content.name),
            Count(static_cast<uint32_t>(anim.GetFrameCount())),
            Number(static_cast<double>(anim.GetDuration()), 3) + " s",
            Number(GetFramesPerSecond(anim), 2),
            Count(anim.GetBoneCount()),
            Count(animatedCount),
            keyCounts.GetText(),
            Count(anim.GetControlCount()),
            Count(anim.GetCameraCount()),
            Count(content.size)};
}

std::string FormatValues(const FloatStream* pValues) {
    if (!pValues)
        return "";
    const auto [least, most] = std::ranges::minmax(pValues->GetKeys(), {}, &FloatKey::value);
    const std::string text = Number(static_cast<double>(least.value));
    return least.value == most.value ? text : text + " to " + Number(static_cast<double>(most.value));
}

// By target, and for one target in the order of the file.
void PrintControls(std::string& out, const AnimationContent& content) {
    std::vector<const Anim::ControlStream*> controls;
    for (uint32_t i = 0; i < content.pAnim->GetControlCount(); ++i)
        controls.push_back(&content.pAnim->GetControl(static_cast<int32_t>(i)));
    const auto getTarget = [](const Anim::ControlStream* pControl) {
        return std::pair(pControl->ref.type, std::string_view(pControl->name.GetTextOrEmpty()));
    };
    std::ranges::stable_sort(controls, {}, getTarget);
    TextTable table({{"target"}, {"name"}, {"drives"}, {"keys", Right}, {"values"}});
    const Anim::ControlStream* pLast = nullptr;
    for (const Anim::ControlStream* pControl : controls) {
        const bool isNew = !pLast || getTarget(pLast) != getTarget(pControl);
        table.AddRow({isNew ? GetTargetName(pControl->ref.type) : "",
                      isNew ? Name(pControl->name.GetTextOrEmpty()) : "", GetDrivenName(pControl->ref),
                      Count(GetKeyCount(pControl->pValues.get())), FormatValues(pControl->pValues.get())});
        pLast = pControl;
    }
    table.PrintSection(out, "controls of animation \"" + Name(content.name) + '"');
}

void PrintCameras(std::string& out, const AnimationContent& content) {
    TextTable table({{"camera"}, {"position keys", Right}, {"rotation keys", Right}});
    for (uint32_t i = 0; i < content.pAnim->GetCameraCount(); ++i) {
        const Anim::CameraStream& camera = content.pAnim->GetCamera(static_cast<int32_t>(i));
        table.AddRow({Name(camera.name.GetTextOrEmpty()), Count(GetKeyCount(camera.pPosition.get())),
                      Count(GetKeyCount(camera.pRotation.get()))});
    }
    table.PrintSection(out, "cameras of animation \"" + Name(content.name) + '"');
}

} // namespace

void PrintAnimations(std::string& out, const std::vector<AnimationContent>& animations) {
    TextTable table({{"animation"},
                     {"frames", Right},
                     {"duration", Right},
                     {"a second", Right},
                     {"bones", Right},
                     {"animated", Right},
                     {"keys a bone", Right},
                     {"controls", Right},
                     {"cameras", Right},
                     {"bytes", Right}});
    TextTable others({{"animation"}, {"in model"}, {"name there"}, {"bounds"}});
    TextTable bounds({{"animation"}, {"bounds"}});
    for (const AnimationContent& content : animations)
        if (!content.pAnim)
            others.AddRow(
                {Name(content.name), Name(content.xrefModel), Name(content.xrefAnim), FormatBounds(content.bounds)});
        else {
            table.AddRow(MakeRow(content));
            if (content.bounds)
                bounds.AddRow({Name(content.name), FormatBounds(content.bounds)});
        }
    table.PrintSection(out, Count(table.GetRowCount(), "animation", "animations"));
    bounds.PrintSection(out, "bounds of animations");
    others.PrintSection(out, Count(others.GetRowCount(), "animation", "animations") + " of other models");
    for (const AnimationContent& content : animations) {
        if (!content.pAnim)
            continue;
        PrintControls(out, content);
        PrintCameras(out, content);
    }
}
