#pragma once

class MXMLItem;

/// Holds a tree from strangers, parsed but not yet loaded, against the numbers of subitems that
/// bound a state (limits.h). It knows names and numbers alone, at any depth. Takes one walk.
/// @throws MException (256) "Invalid file contents. Too many points in a curve." or "Invalid file
/// contents. Too many targets."
void CheckSettingsTree(const MXMLItem& settings);
