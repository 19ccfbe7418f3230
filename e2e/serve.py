#!/usr/bin/env python3
"""Serves a folder on 127.0.0.1 as an HbbTV application server does: pages
named .hbbtv go out as application/vnd.hbbtv.xhtml+xml, .cehtml as
application/ce-html+xml, .xhtml as application/xhtml+xml.
Usage: serve.py DIR PORT"""
import http.server
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


if __name__ == '__main__':
    directory, port = sys.argv[1], int(sys.argv[2])
    server = http.server.ThreadingHTTPServer(('127.0.0.1', port), partial(Handler, directory=directory))
    server.serve_forever()
