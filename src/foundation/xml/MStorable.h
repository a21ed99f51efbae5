#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "foundation/strings/MString.h"

class MXMLItem;

/// What keeps itself as one attribute of an item. No operation fails: what cannot be read leaves
/// the value as it is. One thread at a time.
class MStorable
{
public:
    /// Words the value and reads what was typed in place of its class; both are given or neither.
    struct TextCallback
    {
        std::function<MString()> get;
        std::function<void(const MString& typed)> set;
    };

    MStorable() = default;
    MStorable(const MStorable&) = delete;
    MStorable& operator=(const MStorable&) = delete;
    virtual ~MStorable();

    /// The value as text without a unit.
    virtual MString GetAsString() const;
    /// Takes any value that the text holds, also one out of range.
    virtual void SetFromString(const MString& text);
    /// Returns whether the value is another than before.
    virtual bool SetDefault();
    virtual void Store(MXMLItem& item) const;
    /// Takes any value that the item holds, also one out of range, or the default if it has none.
    virtual void Load(MXMLItem& item);
    /// Reads what the value is like from its definition: "id" and what the class adds.
    virtual void InitFromXML(MXMLItem& item);

    /// The attribute under which the value is stored.
    const MString& GetId() const noexcept { return id; }
    void SetId(const MString& newId) noexcept { id = newId; }

    void SetTextCallback(TextCallback newCallback) { textCallback = std::move(newCallback); }

    /// Keeps @p object as long as this value lives, such as what a text callback works with. One
    /// that belongs to others comes with a deleter that does nothing.
    void SetCompanion(std::shared_ptr<void> object) noexcept { companion = std::move(object); }

protected:
    bool HasTextCallback() const noexcept { return textCallback.get && textCallback.set; }
    const TextCallback& GetTextCallback() const noexcept { return textCallback; }

private:
    MString id = "value";
    std::shared_ptr<void> companion; ///< dies after the callback
    TextCallback textCallback;
};
