#pragma once

class MBitmap;
class MStream;

/// TGA files, to read from any stream. GUI thread.
namespace images
{

/// Reads an image and nothing behind its pixels. With a colour map it becomes a paletted bitmap,
/// where entries that the file lacks are opaque black; otherwise true colour from 8 (grey), 16, 24
/// or 32 bits a pixel. A width or height below 1 leaves an empty bitmap, any other depth the bitmap
/// as it was.
/// @throws MException (256) "No TGA header present.", (256) "Invalid file contents. Invalid TGA
/// header." for a colour map that fits no palette, (256) "Could not read required data from
/// stream." if the data end early, (256) "Bitmap is too large.", and as the stream does; the bitmap
/// is then as it was.
void LoadTGA(MStream& stream, MBitmap& bitmap);

} // namespace images
