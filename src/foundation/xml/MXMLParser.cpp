#include "foundation/xml/MXMLParser.h"

#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"

MXMLParser::MXMLParser(MXMLItem& emptyRoot, const MMLLimits& usedLimits)
    : MMLParser(usedLimits),
      root(emptyRoot)
{
}

bool MXMLParser::OnElement(const MString& name, std::vector<MAttribute>& received, bool isClosing)
{
    if (isClosing)
        return Close(name);
    Open(name, received);
    return false;
}

bool MXMLParser::OnText(const MString& text)
{
    int length = text.Length();
    while (length > 0 && text.CharAt(length - 1) <= u' ')
        --length;
    if (length == 0)
        return false;
    if (current == nullptr)
        throw MException("Text outside of any element.", MException::BadData);

    MString whole = current->GetText();
    current->SetText({}); // so that the text grows in place
    if (!whole.IsEmpty())
        whole.Append(u' ');
    whole.Append(text.Mid(0, length));
    if (static_cast<std::size_t>(whole.Length()) > limits.textCharacters)
        Refuse("Text is too long.");
    current->SetText(whole);
    return false;
}

void MXMLParser::Open(const MString& name, std::vector<MAttribute>& received)
{
    if (depth == limits.depth)
        Refuse("Elements are nested too deeply.");
    if (itemCount == limits.items)
        Refuse("Too many elements.");
    ++depth;
    ++itemCount;
    if (current == nullptr)
    {
        current = &root;
        root.SetName(name);
    }
    else
        current = &current->AddSubItem(name);
    current->AdoptAttributes(received);
}

bool MXMLParser::Close(const MString& name)
{
    if (current == nullptr || current->GetName() != name)
        Refuse("Invalid closing element name.");
    --depth;
    current = current == &root ? nullptr : current->GetParent();
    return current == nullptr;
}
