#include "tool/lint/cases.h"

namespace camcfg::tests {

std::vector<LintCase> streamCases() {
  return {
      {"carried-name", kCleanMedia, R"( Name="line")", "", R"( Name="x")",
       R"(x.xml:4: error: <AENC> has no "Name", and is called 'main', as the one before it [carried-name]
)"},
      {"carried-name", kCleanMedia, R"( Name="main")", "", R"( Name="other")",
       R"(x.xml:3: error: <VENC> has no "Name", and there is none before it to take: the section does not load [carried-name]
)"},
      {"source-id-range", kCleanMedia,
       R"(        <AI Id="2" Name="mic" AiId="0" Enabled="0"/>
)",
       R"(        <AI Id="2" Name="mic" AiId="0" Enabled="0"/>
        <AENC Id="30" Name="rear" AencId="1" Enabled="0"/>
)",
       R"(        <AI Id="2" Name="mic" AiId="0" Enabled="0"/>
        <AENC Id="29" Name="rear" AencId="1" Enabled="0"/>
)",
       R"(x.xml:6: error: <AENC>: "Id" 30 is outside 0..29 [source-id-range]
)"},
      {"cache-size-missing", kCleanMedia, R"( BufferSizeKB="128")", "", R"( BufferSizeB="4096")",
       R"(x.xml:12: error: cache 7 has no "BufferSizeB", "BufferSizeKB" or "BufferSizeMB" [cache-size-missing]
)"},
      {"cache-size-wraps", kCleanMedia, R"(BufferSizeMB="8")", R"(BufferSizeMB="2048")",
       R"(BufferSizeMB="2047")",
       R"(x.xml:8: error: cache 0: "BufferSizeMB" 2048 is 2 GiB or more and wraps to -2147483648 bytes [cache-size-wraps]
)"},
      {"cache-size-empty", kCleanMedia, R"(BufferSizeMB="8")", R"(BufferSizeMB="0")",
       R"(BufferSizeMB="1")",
       R"(x.xml:8: warning: cache 0: "BufferSizeMB" 0 is not a size [cache-size-empty]
)"},
      {"cache-several-sizes", kCleanMedia, R"(BufferSizeMB="8")",
       R"(BufferSizeB="10000" BufferSizeMB="8")", R"(BufferSizeB="10000" BufferSizeMB="-1")",
       R"(x.xml:8: warning: cache 0 has several sizes [cache-several-sizes]
)"},
      {"cache-not-found", kCleanMedia,
       R"(<Cache Id="7" Name="audio" BufferSizeKB="128">
            <AllowedStreamSource Id="1"/>
        </Cache>)",
       R"(<CACHE Id="7" Name="audio" BufferSizeKB="128">
            <AllowedStreamSource Id="1"/>
        </CACHE>)",
       R"(<Cache Id="7" Name="audio" BufferSizeKB="128">
            <allowedstreamsource Id="1"/>
        </Cache>)",
       R"(x.xml:12: error: cache 7: updates do not find <CACHE> [cache-not-found]
)"},
      {"cache-shadowed", kCleanMedia,
       R"(    <StreamCache>
)",
       R"(    <StreamCache>
        <CacheOld Id="7"/>
)",
       R"(    <StreamCache>
        <Cache Id="8" Name="a" BufferSizeB="10000"><AllowedStreamSource Id="1"/></Cache>
)",
       R"(x.xml:8: warning: <StreamCache>: no loader reads <CacheOld>, and the next save drops it [unknown-element]
x.xml:13: error: cache 7: updates find <CacheOld> at line 8 [cache-shadowed]
)"},
      {"whitelist-empty", kCleanMedia,
       R"(            <AllowedStreamSource Id="1"/>
)",
       "",
       R"(            <allowedStreamSource Id="1"/>
)",
       R"(x.xml:4: warning: <AENC>: "Id" 1 is allowed by no cache [source-unused]
x.xml:12: error: cache 7 allows no source [whitelist-empty]
)"},
      {"carried-source-id", kCleanMedia, R"(<AllowedStreamSource Id="2"/>)",
       "<AllowedStreamSource/>", R"(<AllowedStreamSource Id="2" Default="0"/>)",
       R"(x.xml:10: error: cache 0: this entry has no readable "Id" and stands for source 0 [carried-source-id]
x.xml:10: warning: cache 0: source 0 is allowed already at line 9 [allowed-twice]
)"},
      {"carried-source-id", kCleanMedia, R"(<AllowedStreamSource Id="0" Default="1"/>)",
       R"(<AllowedStreamSource Default="1"/>)", R"(<AllowedStreamSource Id="0" Default="2"/>)",
       R"(x.xml:9: error: cache 0: this entry has no readable "Id" and stands for source 0 [carried-source-id]
)"},
      {"allowed-twice", kCleanMedia, R"(<AllowedStreamSource Id="2"/>)",
       R"(<AllowedStreamSource Id="2"/>
            <AllowedStreamSource Id="2"/>)",
       R"(<AllowedStreamSource Id="2"/>)",
       R"(x.xml:11: warning: cache 0: source 2 is allowed already at line 10 [allowed-twice]
)"},
      {"two-defaults", kCleanMedia, R"(<AllowedStreamSource Id="2"/>)",
       R"(<AllowedStreamSource Id="2" Default="1"/>)",
       R"(<AllowedStreamSource Id="2" Default="0"/>)",
       R"(x.xml:10: warning: cache 0: source 2 is marked "Default", too, and source 0 is carried [two-defaults]
)"},
      {"no-default", kCleanMedia,
       R"(<AllowedStreamSource Id="0" Default="1"/>
            <AllowedStreamSource Id="2"/>)",
       R"(<AllowedStreamSource Id="2"/>
            <AllowedStreamSource Id="0"/>)",
       R"(<AllowedStreamSource Id="2"/>
            <AllowedStreamSource Id="0" Default="1"/>)",
       R"(x.xml:8: warning: cache 0: no source is marked "Default", so the last one, 0, is carried [no-default]
)"},
      {"enable-differs", kCleanMedia, R"(<AllowedStreamSource Id="2"/>)",
       R"(<AllowedStreamSource Id="2" Enable="1"/>)", R"(<AllowedStreamSource Id="2" Enable="0"/>)",
       R"(x.xml:10: warning: cache 0: source 2 is marked "Enable", but source 0 is carried [enable-differs]
)"},
      {"enabled-outside-whitelist", kCleanMedia, R"(<AllowedStreamSource Id="0" Default="1"/>)",
       R"(<AllowedStreamSource Id="32" Default="1"/>)",
       R"(<AllowedStreamSource Id="0" Default="3"/>)",
       R"(x.xml:3: warning: <VENC>: "Id" 0 is allowed by no cache [source-unused]
x.xml:9: error: <AllowedStreamSource>: "Id" 32 is outside 0..29 [source-id-range]
x.xml:9: error: cache 0 carries source 32, which is not in its whitelist [enabled-outside-whitelist]
x.xml:9: error: cache 0 carries source 32, which does not exist [enabled-source-missing]
)"},
      {"enabled-source-missing", kCleanMedia, R"(<AllowedStreamSource Id="0" Default="1"/>)",
       R"(<AllowedStreamSource Id="9" Default="1"/>)",
       R"(<AllowedStreamSource Id="0" Default="3"/>)",
       R"(x.xml:3: warning: <VENC>: "Id" 0 is allowed by no cache [source-unused]
x.xml:9: error: cache 0 carries source 9, which does not exist [enabled-source-missing]
)"},
      {"enabled-source-disabled", kCleanMedia, R"( ChnId="0")", R"( ChnId="0" Enabled="0")",
       R"( ChnId="0" Enabled="1")",
       R"(x.xml:9: warning: cache 0 carries source 0, which is disabled [enabled-source-disabled]
)"},
      {"allowed-source-missing", kCleanMedia, R"(<AllowedStreamSource Id="2"/>)",
       R"(<AllowedStreamSource Id="9"/>)", R"(<AllowedStreamSource Id="2" Default="0"/>)",
       R"(x.xml:10: warning: cache 0 allows source 9, which does not exist [allowed-source-missing]
)"},
  };
}

}  // namespace camcfg::tests
