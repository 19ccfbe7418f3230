#!/usr/bin/env python3
"""Serves a folder on 127.0.0.1 as an HbbTV application server does: pages
named .hbbtv go out as application/vnd.hbbtv.xhtml+xml, .cehtml as
application/ce-html+xml, .xhtml as application/xhtml+xml; byte ranges are
served, so that media players can seek.
Usage: serve.py DIR PORT (ORVANE_SERVE_LOG=FILE: each request's path and
user agent are added to FILE)"""
import http.server
import os
import re
import sys
from functools import partial


class Handler(http.server.SimpleHTTPRequestHandler):
    extensions_map = dict(http.server.SimpleHTTPRequestHandler.extensions_map)
    extensions_map.update({
        '.hbbtv': 'application/vnd.hbbtv.xhtml+xml',
        '.cehtml': 'application/ce-html+xml',
        '.xhtml': 'application/xhtml+xml',
        '.aitx': 'application/vnd.dvb.ait+xml',
    })

    def log_message(self, *args):
        pass

    def send_head(self):
        # ORVANE_SERVE_LOG names a file that gets "path<TAB>user agent" for
        # every request, so that a test can see who asked.
        if os.environ.get('ORVANE_SERVE_LOG'):
            with open(os.environ['ORVANE_SERVE_LOG'], 'a') as log:
                log.write('%s\t%s\n' % (self.path, self.headers.get('User-Agent', '')))
        match = re.fullmatch(r'bytes=(\d*)-(\d*)', self.headers.get('Range', ''))
        path = self.translate_path(self.path)
        if not match or not os.path.isfile(path):
            return super().send_head()
        size = os.path.getsize(path)
        first = int(match.group(1)) if match.group(1) else max(0, size - int(match.group(2) or 0))
        last = min(int(match.group(2)), size - 1) if match.group(1) and match.group(2) else size - 1
        if first >= size or first > last:
            self.send_error(416)
            return None
        f = open(path, 'rb')
        f.seek(first)
        self.send_response(206)
        self.send_header('Content-Type', self.guess_type(path))
        self.send_header('Content-Range', 'bytes %d-%d/%d' % (first, last, size))
        self.send_header('Content-Length', str(last - first + 1))
        self.send_header('Accept-Ranges', 'bytes')
        self.end_headers()
        self.range_left = last - first + 1
        return f

    def copyfile(self, source, outputfile):
        left = getattr(self, 'range_left', None)
        if left is None:
            return super().copyfile(source, outputfile)
        while left > 0:
            chunk = source.read(min(65536, left))
            if not chunk:
                break
            outputfile.write(chunk)
            left -= len(chunk)


if __name__ == '__main__':
    directory, port = sys.argv[1], int(sys.argv[2])
    server = http.server.ThreadingHTTPServer(('127.0.0.1', port), partial(Handler, directory=directory))
    server.serve_forever()
