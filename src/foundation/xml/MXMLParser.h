#pragma once

#include "foundation/xml/MMLParser.h"

class MXMLItem;

/// Builds the tree of an item from a text; what it built before a failure stays.
class MXMLParser : public MMLParser
{
public:
    /// @p emptyRoot takes the name and everything else of the first element.
    explicit MXMLParser(MXMLItem& emptyRoot, const MMLLimits& usedLimits = {});

protected:
    bool OnElement(const MString& name, std::vector<MAttribute>& received, bool isClosing) override;
    /// @throws MException (256) "Text outside of any element."
    bool OnText(const MString& text) override;

private:
    void Open(const MString& name, std::vector<MAttribute>& received);
    bool Close(const MString& name);

    MXMLItem& root;
    MXMLItem* current = nullptr; ///< the innermost open element
    int itemCount = 0;
    int depth = 0; ///< open elements
};
