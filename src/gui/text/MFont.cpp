#include "gui/text/MFont.h"

#include <algorithm>
#include <vector>

#include "gui/text/CodePoints.h"
#include "gui/text/FontCollection.h"
#include "gui/text/GlyphCache.h"

namespace
{

/// The instances that fonts hold.
class Instances
{
public:
    static Instances& Get()
    {
        static Instances instances;
        return instances;
    }

    std::shared_ptr<MFontInstance> Find(MFontDescription description, int newGeneration)
    {
        description.space = 0; // all share one, whatever their space
        if (newGeneration != generation)
            known.clear(); // who still holds one will ask again
        generation = newGeneration;
        std::erase_if(known, [](const Known& one) { return one.instance.expired(); });
        const auto found = std::ranges::find(known, description, &Known::description);
        if (found != known.end())
            return found->instance.lock();
        auto made =
            std::make_shared<MFontInstance>(description, FontCollection::Get(), GlyphCache::Get());
        known.push_back({description, made});
        return made;
    }

private:
    struct Known
    {
        MFontDescription description;
        std::weak_ptr<MFontInstance> instance;
    };

    std::vector<Known> known;
    int generation = 0;
};

} // namespace

int MFont::MeasureRun(const MString& text, int from, int count) const
{
    const Extent extent = Measure(text, from, count);
    return extent.WithSpaces(std::max<std::int64_t>(0, extent.characters - 1), description.space);
}

int MFont::MeasureSpaced(const MString& text, int from, int count) const
{
    const Extent extent = Measure(text, from, count);
    return extent.WithSpaces(extent.characters, description.space);
}

int MFont::Extent::WithSpaces(std::int64_t spaces, int space) const noexcept
{
    return static_cast<int>(
        std::clamp<std::int64_t>(advances + spaces * space, INT32_MIN, INT32_MAX));
}

MFont::Extent MFont::Measure(const MString& text, int from, int count) const
{
    const std::shared_ptr<MFontInstance> used = GetInstance();
    Extent extent = {.advances = 0, .characters = 0};
    const int end = count < text.Length() - from ? from + count : text.Length();
    for (int i = std::max(0, from); i < end;)
    {
        const char32_t code = ReadCodePoint(text, i);
        extent.advances += used->GetAdvance(code);
        if (code == U'\t')
            extent.characters += BlanksPerTab;
        else if (!IsControl(code))
            ++extent.characters;
    }
    return extent;
}

std::shared_ptr<MFontInstance> MFont::GetInstance() const
{
    const int present = FontCollection::Get().GetGeneration();
    if (!instance || generation != present)
    {
        instance = Instances::Get().Find(description, present);
        generation = present;
    }
    return instance;
}
