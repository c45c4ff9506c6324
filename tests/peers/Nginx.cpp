#include "tests/peers/Nginx.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/support/Sockets.h"

namespace kifo::testing {
namespace {

constexpr auto kProgram = "/usr/sbin/nginx";

}  // namespace

std::string Nginx::whyNot() {
  return access(kProgram, X_OK) == 0 ? "" : "nginx is not installed (package nginx-light)";
}

bool Nginx::start(int port, const Options& options) {
  // Ports that were free a moment ago.
  port_ = ListeningSocket().port();
  proxyPort_ = ListeningSocket().port();
  std::ofstream(authorities()) << authority_.pem();
  std::ofstream(directory_.file("server.pem")) << certificate_.pem();
  std::ofstream(directory_.file("server.key")) << certificate_.keyPem();
  std::ofstream(directory_.file("nginx.conf"))
      << "daemon off; master_process off; pid nginx.pid; error_log /dev/stdout notice;\n"
         "events { worker_connections 256; }\n"
         "http {\n"
         "  client_body_temp_path body; proxy_temp_path proxy; fastcgi_temp_path fastcgi;\n"
         "  uwsgi_temp_path uwsgi; scgi_temp_path scgi;\n"
         "  log_format each '$connection $server_protocol $request_uri';\n"
         "  access_log requests each;\n"
         "  large_client_header_buffers 4 64k; client_max_body_size 0;\n"
      << "  keepalive_requests " << options.requestsPerConnection << ";\n"
      << "  keepalive_timeout " << options.idleTimeout << ";\n"
      << "  server {\n"
      << "    listen 127.0.0.1:" << port_ << " ssl" << (options.speaksHttp2 ? " http2" : "")
      << ";\n"
         "    ssl_certificate server.pem; ssl_certificate_key server.key;\n"
      << "    location / { proxy_pass http://127.0.0.1:" << port
      << "; }\n"
         "  }\n"
      << "  server {\n"
      << "    listen 127.0.0.1:" << proxyPort_
      << ";\n"
         "    location / { proxy_pass http://$http_host$request_uri;"
         " proxy_set_header X-Proxy nginx; }\n"
         "  }\n"
         "}\n";
  program_.start({kProgram, "-p", directory_.path(), "-c", "nginx.conf", "-e", "stderr"});
  for (std::string line = program_.readLine(); !line.empty(); line = program_.readLine()) {
    if (line.find("getrlimit") != std::string::npos) return true;  // it listens before it says so
  }
  return false;
}

std::vector<Nginx::Request> Nginx::requests() const {
  std::vector<Request> all;
  std::ifstream log(directory_.file("requests"));
  for (std::string line; std::getline(log, line);) {
    Request request;
    std::istringstream(line) >> request.connection >> request.protocol >> request.uri;
    all.push_back(std::move(request));
  }
  return all;
}

}  // namespace kifo::testing
