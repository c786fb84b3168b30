#include "NginxOrigin.hpp"

#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <sstream>
#include <utility>

namespace {

constexpr std::size_t endpointCount = 5;
constexpr timespec modificationTime{.tv_sec = 1'710'531'000, .tv_nsec = 0};

constexpr const char* certificates = R"(set -e
key='-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes'
openssl req -x509 $key -days 30 -subj '/CN=Test authority' -addext keyUsage=keyCertSign \
    -keyout authority.key -out authority.pem
certify() {
    openssl req $key -subj "/CN=$1" -addext "subjectAltName=$3" -keyout "$1.key" -out "$1.csr"
    openssl x509 -req -in "$1.csr" -copy_extensions copy -days "$2" -CA authority.pem -CAkey authority.key \
        -out "$1.pem"
}
certify server 30 DNS:localhost,IP:127.0.0.1
certify another 30 DNS:another.example
certify expired 0 DNS:localhost,IP:127.0.0.1)";

int exitStatus(pid_t process) {
    int status = -1;
    if (process < 0 || ::waitpid(process, &status, 0) != process || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

}  // namespace

NginxOrigin::NginxOrigin() {
    std::filesystem::create_directories(folder_.path() / "www" / "plain");
    std::filesystem::create_directory_symlink("plain", folder_.path() / "www" / "gzip");
    if (exitStatus(spawn(certificates)) != 0) {
        failure_ = "openssl failed: " + log();
        return;
    }
    if (!openPorts()) {
        failure_ = "no ports for nginx";
        return;
    }
    writeConfiguration();
    std::string nginx = "NGINX='";
    for (const int socket : sockets_)
        nginx += std::to_string(socket) + ';';
    nginx += "' exec nginx -p . -c nginx.conf -e error.log";
    if (exitStatus(spawn(nginx + " -t")) == 0) {
        process_ = spawn(nginx);
    } else {
        failure_ = "nginx does not run: " + log();
    }
    for (const int socket : std::exchange(sockets_, {}))
        ::close(socket);
}

NginxOrigin::~NginxOrigin() {
    // Not SIGKILL, which would leave the worker process behind.
    if (process_ > 0) ::kill(process_, SIGTERM);
    exitStatus(process_);
    for (const int socket : sockets_)
        ::close(socket);
}

std::string NginxOrigin::url(Endpoint endpoint, std::string_view path, std::string_view host) const {
    const std::string scheme = endpoint == Endpoint::http ? "http://" : "https://";
    return scheme + std::string(host) + ':' + std::to_string(port(endpoint)) + std::string(path);
}

std::uint16_t NginxOrigin::port(Endpoint endpoint) const noexcept {
    return ports_.empty() ? std::uint16_t{0} : ports_[static_cast<std::size_t>(endpoint)];
}

void NginxOrigin::serve(const std::string& name, std::string_view content) const {
    const std::filesystem::path file = folder_.path() / "www" / "plain" / name;
    std::ofstream(file, std::ios::binary) << content;
    const timespec times[] = {modificationTime, modificationTime};
    ::utimensat(AT_FDCWD, file.c_str(), times, 0);
}

void NginxOrigin::serveZeros(const std::string& name, std::size_t size) const {
    serve(name, "");
    std::filesystem::resize_file(folder_.path() / "www" / "plain" / name, size);
}

pid_t NginxOrigin::spawn(const std::string& commands) const {
    // Debian keeps nginx where only root's path leads.
    std::string script = "cd '" + folder_.path().string() + "'; exec >>log 2>&1; PATH=$PATH:/usr/sbin; " + commands;
    std::string words[] = {"setpriv", "--pdeathsig", "TERM", "sh", "-c"};
    char* const arguments[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                               words[4].data(), script.data(),   nullptr};
    pid_t child = -1;
    return ::posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments, environ) == 0 ? child : -1;
}

bool NginxOrigin::openPorts() {
    for (std::size_t i = 0; i < endpointCount; ++i) {
        // Not closed on exec: nginx inherits the listening sockets, so no port can be lost to somebody else and
        // connections queue until it is ready.
        const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
        sockets_.push_back(socket);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(socket, generic, size) != 0 || ::listen(socket, SOMAXCONN) != 0 ||
            ::getsockname(socket, generic, &size) != 0) {
            return false;
        }
        ports_.push_back(ntohs(address.sin_port));
    }
    return true;
}

void NginxOrigin::writeConfiguration() const {
    // Started by root, the worker would otherwise be nobody and could not read the folder.
    std::ofstream(folder_.path() / "nginx.conf")
        << (::geteuid() == 0 ? "user root;" : "") << R"(
daemon off;
worker_processes 1;
pid nginx.pid;
error_log error.log;
events { worker_connections 1024; }
http {
    access_log off;
    client_body_temp_path body;
    proxy_temp_path proxy;
    fastcgi_temp_path fastcgi;
    uwsgi_temp_path uwsgi;
    scgi_temp_path scgi;
    types { application/json json; }
    sendfile on;
    tcp_nopush on;
    keepalive_requests 100000000;
    keepalive_timeout 3600s;
    open_file_cache max=16;
    root www;
    gzip_types application/json;
    gzip_min_length 1;
)" << server(Endpoint::http, "")
        << server(Endpoint::https, "server") << server(Endpoint::http2, "server")
        << server(Endpoint::httpsOfAnotherHost, "another") << server(Endpoint::httpsExpired, "expired") << "}\n";
}

std::string NginxOrigin::server(Endpoint endpoint, const std::string& certificate) const {
    std::string text = "server { location /gzip/ { gzip on; } listen 127.0.0.1:" + std::to_string(port(endpoint));
    if (certificate.empty()) return text + "; }\n";
    text += endpoint == Endpoint::http2 ? " ssl http2" : " ssl";
    return text + "; ssl_certificate " + certificate + ".pem; ssl_certificate_key " + certificate + ".key; }\n";
}

std::string NginxOrigin::log() const {
    std::ostringstream text;
    text << std::ifstream(folder_.path() / "log").rdbuf();
    return text.str();
}
