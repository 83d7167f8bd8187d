#include "bench/peers.h"

#include <augeas.h>
#include <libuboot.h>
#include <unistd.h>

#include <cstdlib>
#include <libconfig.h++>
#include <stdexcept>

#include "bench/files.h"
#include "camcfg/params.h"
#include "camcfg/store.h"
#include "camcfg/testkit/device_root.h"

namespace camcfg::bench {
namespace {

void require(bool done, const char* what) {
  if (!done) throw std::runtime_error(what);
}

std::string nameOf(int parameter) {
  return lastParameter(parameter + 1);
}

// Two copies, each saved with a sync() after it.
class Camcfg : public Peer {
 public:
  explicit Camcfg(int parameters) {
    for (const char* path : {"/cfg0/business_param.xml", "/cfg1/business_param.xml"})
      writeFile(path, parameterFile(parameters));
  }
  int read(const std::string& parameter) override {
    int value = -1;
    CFG_COM_GetIntParam(section, name(parameter), &value);
    return value;
  }
  void write(const std::string& parameter, int value) override {
    require(CFG_COM_SetIntParam(section, name(parameter), value) == 0, "CFG_COM_SetIntParam");
  }

 private:
  static char* name(const std::string& parameter) { return const_cast<char*>(parameter.c_str()); }

  char section[6] = "Bench";
  testkit::DeviceRoot device_;
};

// One copy, truncated and written in place.
class Libconfig : public Peer {
 public:
  Libconfig(const std::string& directory, int parameters) : path_(directory + "/bench.cfg") {
    libconfig::Config config;
    libconfig::Setting& bench = config.getRoot().add("Bench", libconfig::Setting::TypeGroup);
    for (int i = 0; i < parameters; ++i) {
      libconfig::Setting& parameter = bench.add(nameOf(i), libconfig::Setting::TypeGroup);
      for (const char* attribute : {"Cur", "Def", "Min"})
        parameter.add(attribute, libconfig::Setting::TypeInt) = 0;
      parameter.add("Max", libconfig::Setting::TypeInt) = 1000000;
      parameter.add("Step", libconfig::Setting::TypeInt) = 1;
    }
    config.writeFile(path_.c_str());
  }
  int read(const std::string& parameter) override {
    libconfig::Config config;
    config.readFile(path_.c_str());
    return config.lookup("Bench." + parameter + ".Cur");
  }
  void write(const std::string& parameter, int value) override {
    libconfig::Config config;
    config.readFile(path_.c_str());
    config.lookup("Bench." + parameter + ".Cur") = value;
    config.writeFile(path_.c_str());
    sync();  // it does not see to that itself
  }

 private:
  std::string path_;
};

// Two copies with checksums, of which a change replaces the older one.
class Ubootenv : public Peer {
 public:
  Ubootenv(const std::string& directory, int parameters) : config_(directory + "/fw_env.config") {
    constexpr std::size_t kSize = 0x4000;
    std::string config;
    for (const char* copy : {"/env0", "/env1"}) {
      writeFile(directory + copy, std::string(kSize, '\0'));
      config += directory + copy + " 0x0 0x4000\n";
    }
    writeFile(config_, config);
    const Environment environment(config_, true);
    for (int i = 0; i < parameters; ++i)
      libuboot_set_env(environment.get(), nameOf(i).c_str(), std::to_string(i).c_str());
    require(libuboot_env_store(environment.get()) == 0, "libuboot_env_store");
  }
  int read(const std::string& parameter) override {
    const Environment environment(config_);
    char* text = libuboot_get_env(environment.get(), parameter.c_str());
    const int value = text == nullptr ? -1 : std::atoi(text);
    std::free(text);
    return value;
  }
  void write(const std::string& parameter, int value) override {
    const Environment environment(config_);
    libuboot_set_env(environment.get(), parameter.c_str(), std::to_string(value).c_str());
    require(libuboot_env_store(environment.get()) == 0, "libuboot_env_store");
    sync();  // it does not see to that itself
  }

 private:
  class Environment {
   public:
    explicit Environment(const std::string& config, bool isNew = false) {
      require(libuboot_initialize(&context_, nullptr) == 0, "libuboot_initialize");
      require(libuboot_read_config(context_, config.c_str()) == 0, "libuboot_read_config");
      require(libuboot_open(context_) == 0 || isNew, "libuboot_open");
    }
    ~Environment() {
      libuboot_close(context_);
      libuboot_exit(context_);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    uboot_ctx* get() const { return context_; }

   private:
    uboot_ctx* context_ = nullptr;
  };

  std::string config_;
};

// One copy, replaced by a rename.
class Augeas : public Peer {
 public:
  Augeas(const std::string& directory, int parameters) : path_(directory + "/business_param.xml") {
    writeFile(path_, parameterFile(parameters));
  }
  int read(const std::string& parameter) override {
    const Tree tree(path_);
    const char* text = nullptr;
    require(aug_get(tree.get(), current(parameter).c_str(), &text) == 1, "aug_get");
    return std::atoi(text);
  }
  void write(const std::string& parameter, int value) override {
    const Tree tree(path_);
    require(aug_set(tree.get(), current(parameter).c_str(), std::to_string(value).c_str()) == 0,
            "aug_set");
    require(aug_save(tree.get()) == 0, "aug_save");
    sync();  // it does not see to that itself
  }

 private:
  // Only the lens and the file that are needed.
  class Tree {
   public:
    explicit Tree(const std::string& path)
        : tree_(aug_init(nullptr, nullptr, AUG_NO_MODL_AUTOLOAD)) {
      require(tree_ != nullptr, "aug_init");
      require(aug_set(tree_, "/augeas/load/Xml/lens", "Xml.lns") == 0 &&
                  aug_set(tree_, "/augeas/load/Xml/incl", path.c_str()) == 0 &&
                  aug_load(tree_) == 0,
              "aug_load");
    }
    ~Tree() { aug_close(tree_); }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    augeas* get() const { return tree_; }

   private:
    augeas* tree_;
  };

  std::string current(const std::string& parameter) const {
    return "/files" + path_ + "/Bench/" + parameter + "/#attribute/Cur";
  }

  std::string path_;
};

template <typename Store>
std::unique_ptr<Peer> make(const std::string& directory, int parameters) {
  return std::make_unique<Store>(directory, parameters);
}

}  // namespace

const std::vector<PeerKind>& peers() {
  static const std::vector<PeerKind> all = {
      {"camcfg",
       [](const std::string& /*directory*/, int parameters) -> std::unique_ptr<Peer> {
         return std::make_unique<Camcfg>(parameters);
       }},
      {"libconfig++", make<Libconfig>},
      {"libubootenv", make<Ubootenv>},
      {"Augeas", make<Augeas>},
  };
  return all;
}

}  // namespace camcfg::bench
