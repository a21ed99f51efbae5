#pragma once

class MBitmap;
class MStream;

/// PNG files, from and to any stream. GUI thread.
namespace images
{

/// Reads an image and nothing behind it. With a palette it becomes a paletted bitmap, where entries
/// that the file lacks are opaque black; anything else true colour with eight bits a channel.
/// @throws MException (256) "Error loading a PNG file." for broken data and more pixels than
/// limits::BitmapPixels, (256) "Error loading PNG palette.", (257) "Could not initialize libpng."
/// or "Could not initialize libpng info structure.", and as the stream does; the bitmap is then as
/// it was.
void LoadPNG(MStream& stream, MBitmap& bitmap);

/// Writes the pixels as they are, deflated as well as can be; loading them gives the same bytes.
/// @throws MException (2) "Empty image cannot be saved to PNG.", (257) as above, (0) "Error saving
/// a PNG file.", and as the stream does
void SavePNG(const MBitmap& bitmap, MStream& stream);

} // namespace images
