# The demo driven by Python Selenium: the channel list, keys through
# actions, now/next, a key, a tune and a stream event through the vendor
# endpoints, a screenshot and the middleware log.
import json
import sys
import urllib.request

from selenium import webdriver
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.common.options import ArgOptions
from selenium.webdriver.support.ui import WebDriverWait

endpoint, page = sys.argv[1], sys.argv[2]
options = ArgOptions()
options.set_capability("browserName", "orvane")
options.set_capability("orvane:options", {"size": "1280x720"})
driver = webdriver.Remote(command_executor=endpoint, options=options)


def vendor(method, what, body=None):
    request = urllib.request.Request(f"{endpoint}/session/{driver.session_id}/orvane/{what}", method=method,
                                     data=json.dumps(body or {}).encode(),
                                     headers={"Content-Type": "application/json"})
    with urllib.request.urlopen(request) as reply:
        return json.load(reply)["value"]


def text(selector):
    return driver.find_element(By.CSS_SELECTOR, selector).text


try:
    driver.get(page)
    assert driver.title == "Orvane demo", driver.title
    wait = WebDriverWait(driver, 10)
    wait.until(lambda d: len(d.find_elements(By.CSS_SELECTOR, "#channel-list li")) == 4)
    wait.until(lambda d: "Orvane One" in text("#channel"))
    ActionChains(driver).send_keys(Keys.ARROW_RIGHT).perform()
    wait.until(lambda d: "Orvane Two" in text("#channel"))
    wait.until(lambda d: "Orvane Two Now" in text("#now") and "Orvane Two Next" in text("#next"))
    vendor("POST", "key", {"key": "VK_1"})
    wait.until(lambda d: "Orvane One" in text("#channel"))
    vendor("POST", "tune", {"name": "Orvane News"})
    wait.until(lambda d: "Orvane News" in text("#channel"))
    vendor("POST", "stream-event", {"name": "now", "data": "from-the-test", "text": "fired"})
    wait.until(lambda d: "from-the-test" in text("#stream"))
    assert driver.execute_script("return document.getElementById('video').playState") == 2
    # Elements: a plug-in element through a script and back, reads, XPath,
    # and an input that takes keys, is cleared and is clicked.
    video = driver.execute_script("return document.getElementById('video')")
    assert driver.execute_script("return arguments[0].playState", video) == 2
    assert video.get_attribute("type") == "video/broadcast" and video.tag_name == "object"
    panel = driver.find_element(By.XPATH, "//div[@id='channels']")
    assert panel.is_displayed() and panel.rect["width"] > 0, panel.rect
    assert panel.value_of_css_property("position") == "absolute", panel.value_of_css_property("position")
    assert len(panel.find_elements(By.TAG_NAME, "li")) == 4
    field = driver.execute_script(
        "var i = document.createElement('input'); i.onclick = function () { i.title = 'clicked'; };"
        "document.body.appendChild(i); return i")
    field.send_keys("abc")
    assert field.get_property("value") == "abc"
    field.clear()
    field.click()
    assert field.get_property("value") == "" and field.get_attribute("title") == "clicked"
    assert driver.execute_async_script("var done = arguments[0]; setTimeout(function () { done(7); }, 50)") == 7
    shot = panel.screenshot_as_png
    assert shot[:8] == b"\x89PNG\r\n\x1a\n", shot[:8]
    png = driver.get_screenshot_as_png()
    assert png[:8] == b"\x89PNG\r\n\x1a\n" and len(png) > 10000, len(png)
    # The receiver's other controls, each seen in the middleware log.
    vendor("POST", "parental-rating", {"value": 18, "blocked": True})
    assert vendor("POST", "clock", {"set": 1800000000})["time"] == 1800000000
    assert vendor("POST", "clock", {"advance": 60})["time"] == 1800000060
    vendor("POST", "network-status", {"status": 0})
    vendor("POST", "pvr-status", {"status": 1})
    vendor("POST", "low-memory")
    log = "\n".join(vendor("GET", "log"))
    for expected in ("MwBroadcastAddStreamEventListener", "VK_RIGHT (39) from the webdriver",
                     "VK_1 (49) from the webdriver", "Broadcast_onStreamEvent", "Broadcast_onParentalRatingChange",
                     "NetworkInterface_onNetworkStatusChange", "LocalSystem_onPvrStatusChange", "AppMgr_onLowMemory"):
        assert expected in log, expected
    print("PASS")
finally:
    driver.quit()
