#pragma once

class MXMLItem;

/// Makes complete presets below @p root of readable ones, which hold no more than what differs from
/// a new plugin, in themselves and in each of their slots: a new plugin takes each of them over and
/// stores all that it has. They then stand in the compressed form of the preset manager.
/// @throws MException that names the preset: for one without a name or with the path of another,
/// for what a plugin does not take as it stands, and for elements that are neither presets nor
/// folders. The tree is then to be discarded.
void CompletePresets(MXMLItem& root);
