// placeholder
#pragma once
namespace kvx { class EditIndex {}; }
