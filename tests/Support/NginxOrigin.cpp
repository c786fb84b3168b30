#include "NginxOrigin.hpp"

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <utility>

namespace {

constexpr std::size_t endpointCount = 5;
constexpr timespec modificationTime{.tv_sec = 1'710'531'000, .tv_nsec = 0};

/// Starts a program that ends with the calling thread at the latest. Its output goes to `output`; -1 on failure.
pid_t spawn(const std::vector<std::string>& arguments, const std::string& output,
            const std::vector<std::string>& environment = {}) {
    // Everything is laid out before the fork: afterwards the child of a process with threads may not allocate.
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (const std::string& variable : environment)
        envp.push_back(const_cast<char*>(variable.c_str()));
    // Debian keeps nginx where only root's path leads.
    std::string path = "PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";
    envp.push_back(path.data());
    envp.push_back(nullptr);
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child != 0) return child;

    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(127);
    const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(file, STDOUT_FILENO);
    ::dup2(file, STDERR_FILENO);
    ::execvpe(argv.front(), argv.data(), envp.data());
    ::_exit(127);
}

int exitStatus(pid_t process) {
    int status = -1;
    if (process < 0 || ::waitpid(process, &status, 0) != process || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

sockaddr_in loopbackAddress(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

}  // namespace

NginxOrigin::NginxOrigin() {
    std::string pattern = std::filesystem::temp_directory_path() / "nginx-origin-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        failure_ = "no folder for nginx";
        return;
    }
    folder_ = pattern;
    std::filesystem::create_directories(folder_ / "www" / "plain");
    std::filesystem::create_directory_symlink("plain", folder_ / "www" / "gzip");
    if (!makeCertificates() || !openPorts()) return;
    writeConfiguration();
    start();
}

NginxOrigin::~NginxOrigin() {
    if (process_ > 0) {
        // Not SIGKILL, which would leave the worker process behind.
        ::kill(process_, SIGTERM);
        exitStatus(process_);
    }
    for (const int socket : sockets_)
        ::close(socket);
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

std::string NginxOrigin::url(Endpoint endpoint, std::string_view path, std::string_view host) const {
    const std::string scheme = endpoint == Endpoint::http ? "http://" : "https://";
    return scheme + std::string(host) + ':' + std::to_string(port(endpoint)) + std::string(path);
}

std::uint16_t NginxOrigin::port(Endpoint endpoint) const noexcept {
    return ports_.empty() ? std::uint16_t{0} : ports_[static_cast<std::size_t>(endpoint)];
}

void NginxOrigin::serve(const std::string& name, std::string_view content) const {
    const std::filesystem::path file = folder_ / "www" / "plain" / name;
    std::ofstream(file, std::ios::binary) << content;
    const timespec times[] = {modificationTime, modificationTime};
    ::utimensat(AT_FDCWD, file.c_str(), times, 0);
}

void NginxOrigin::serveZeros(const std::string& name, std::size_t size) const {
    serve(name, "");
    std::filesystem::resize_file(folder_ / "www" / "plain" / name, size);
}

bool NginxOrigin::makeCertificates() {
    return runOpenssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-days",
                       "30", "-subj", "/CN=Test authority", "-addext", "keyUsage=keyCertSign", "-keyout", "ca.key",
                       "-out", "ca.pem"}) &&
           makeCertificate("server", "DNS:localhost,IP:127.0.0.1", "30") &&
           makeCertificate("another", "DNS:another.example", "30") &&
           makeCertificate("expired", "DNS:localhost,IP:127.0.0.1", "0");
}

bool NginxOrigin::makeCertificate(const std::string& name, const std::string& hosts, const std::string& days) {
    std::ofstream(folder_ / (name + ".ext")) << "subjectAltName=" << hosts << '\n';
    return runOpenssl({"req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-subj",
                       "/CN=" + name, "-keyout", name + ".key", "-out", name + ".csr"}) &&
           runOpenssl({"x509", "-req", "-in", name + ".csr", "-CA", "ca.pem", "-CAkey", "ca.key", "-CAcreateserial",
                       "-days", days, "-extfile", name + ".ext", "-out", name + ".pem"});
}

bool NginxOrigin::runOpenssl(std::vector<std::string> arguments) {
    for (std::string& argument : arguments) {
        if (argument.ends_with(".pem") || argument.ends_with(".key") || argument.ends_with(".csr") ||
            argument.ends_with(".ext")) {
            argument = folder_ / argument;
        }
    }
    arguments.insert(arguments.begin(), "openssl");
    const int status = exitStatus(spawn(arguments, folder_ / "openssl.log"));
    if (status != 0) {
        failure_ = status == 127 ? "openssl is not installed" : "openssl failed: " + textOf("openssl.log");
    }
    return status == 0;
}

bool NginxOrigin::openPorts() {
    for (std::size_t i = 0; i < endpointCount; ++i) {
        // Not closed on exec: nginx inherits the listening sockets, so no port can be lost to somebody else and
        // connections queue until it is ready.
        const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
        sockets_.push_back(socket);
        sockaddr_in address = loopbackAddress(0);
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(socket, generic, size) != 0 || ::listen(socket, SOMAXCONN) != 0 ||
            ::getsockname(socket, generic, &size) != 0) {
            failure_ = "no ports for nginx";
            return false;
        }
        ports_.push_back(ntohs(address.sin_port));
    }
    return true;
}

void NginxOrigin::writeConfiguration() const {
    // Started by root, the worker would otherwise be nobody and could not read the folder.
    std::ofstream(folder_ / "nginx.conf")
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

std::string NginxOrigin::server(Endpoint endpoint, std::string_view certificate) const {
    std::ostringstream text;
    text << "    server {\n        listen 127.0.0.1:" << port(endpoint) << (certificate.empty() ? "" : " ssl")
         << (endpoint == Endpoint::http2 ? " http2;\n" : ";\n");
    if (!certificate.empty()) {
        text << "        ssl_certificate " << certificate << ".pem;\n        ssl_certificate_key " << certificate
             << ".key;\n";
    }
    text << "        location /gzip/ { gzip on; }\n    }\n";
    return text.str();
}

void NginxOrigin::start() {
    std::string inherited = "NGINX=";
    for (const int socket : sockets_)
        inherited += std::to_string(socket) + ';';
    const std::string prefix = folder_.string() + '/';
    process_ =
        spawn({"nginx", "-p", prefix, "-c", "nginx.conf", "-e", "error.log"}, folder_ / "nginx.log", {inherited});
    for (const int socket : std::exchange(sockets_, {}))
        ::close(socket);
    // When it dies on the way, the kernel closes the ports and the question fails.
    if (process_ > 0 && answers()) return;
    if (process_ > 0) ::kill(process_, SIGTERM);
    const int status = exitStatus(std::exchange(process_, -1));
    failure_ =
        status == 127 ? "nginx is not installed" : "nginx does not run: " + textOf("error.log") + textOf("nginx.log");
}

bool NginxOrigin::answers() const {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const timeval patience{.tv_sec = 20, .tv_usec = 0};
    ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    const sockaddr_in address = loopbackAddress(port(Endpoint::http));
    constexpr std::string_view request = "GET / HTTP/1.0\r\n\r\n";
    char byte = 0;
    const bool isAnswered = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                            ::send(socket, request.data(), request.size(), MSG_NOSIGNAL) > 0 &&
                            ::recv(socket, &byte, 1, 0) == 1;
    ::close(socket);
    return isAnswered;
}

std::string NginxOrigin::textOf(std::string_view file) const {
    std::ostringstream text;
    text << std::ifstream(folder_ / file).rdbuf();
    return text.str();
}
