// The side picture of the wizard (bmp/prog/archivar.gif in the host's folder): a family tree
// over a shelf of archive books against an evening sky, drawn by the builder.
#pragma once

#include <filesystem>

namespace folio::side_picture {

inline constexpr int Width = 164;
inline constexpr int Height = 314;

// Writes the picture as GIF. Throws std::runtime_error when the file can't be written.
void drawSidePicture(const std::filesystem::path& path);

} // namespace folio::side_picture
