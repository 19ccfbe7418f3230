# W3C errors of the endpoint: an unknown session, a malformed body, an
# unknown command, a bad selector, a script that throws; then ten sessions
# opened and closed in a row.
import json
import sys
import urllib.error
import urllib.request

from selenium import webdriver
from selenium.common.exceptions import InvalidSelectorException, JavascriptException
from selenium.webdriver.common.by import By
from selenium.webdriver.common.options import ArgOptions

endpoint, page = sys.argv[1], sys.argv[2]


def raw(method, path, data):
    request = urllib.request.Request(endpoint + path, method=method, data=data,
                                     headers={"Content-Type": "application/json"})
    try:
        with urllib.request.urlopen(request) as reply:
            return reply.status, json.load(reply)["value"]
    except urllib.error.HTTPError as e:
        return e.code, json.load(e)["value"]


def session():
    options = ArgOptions()
    options.set_capability("browserName", "orvane")
    return webdriver.Remote(command_executor=endpoint, options=options)


status, value = raw("POST", "/session/no-such-session/url", b'{"url": "about:blank"}')
assert (status, value["error"]) == (404, "invalid session id"), (status, value)
driver = session()
try:
    driver.get(page)
    status, value = raw("POST", f"/session/{driver.session_id}/url", b"not json")
    assert (status, value["error"]) == (400, "invalid argument"), (status, value)
    status, value = raw("GET", f"/session/{driver.session_id}/no-such-command", None)
    assert (status, value["error"]) == (404, "unknown command"), (status, value)
    try:
        driver.find_element(By.CSS_SELECTOR, "li[[")
        raise AssertionError("a bad selector was taken")
    except InvalidSelectorException:
        pass
    try:
        driver.execute_script("throw new Error('boom')")
        raise AssertionError("a throwing script succeeded")
    except JavascriptException as e:
        assert "boom" in e.msg, e.msg
    status, value = raw("POST", "/session", b'{"capabilities": {}}')
    assert (status, value["error"]) == (500, "session not created"), (status, value)
finally:
    driver.quit()
for _ in range(10):
    driver = session()
    driver.get(page)
    driver.quit()
print("PASS")
