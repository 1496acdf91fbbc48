#pragma once
// Which renderer GTK draws with, chosen before the toolkit starts. Without a GPU (no DRM
// render node) OpenGL is Mesa's CPU emulation: GTK's shaders are compiled through LLVM at
// start, which costs over 100 MB and draws this client's pages no faster than cairo. There
// the client takes cairo and keeps GDK from opening OpenGL at all. A renderer the user
// chose (GSK_RENDERER) is left alone.
#include <filesystem>

namespace qmv::gtk {

// Whether `driDir` (normally /dev/dri) holds a render node ("renderD*").
bool hasRenderNode(const std::filesystem::path& driDir);

// Sets GSK_RENDERER=cairo and adds "gl-disable" to GDK_DEBUG when GSK_RENDERER is unset
// and there is no render node. REQUIRES: before GTK is initialised.
void chooseRenderer();

}  // namespace qmv::gtk
