"""A headless browser that keeps what pages try to load and complain of."""
import base64
import json
import time

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys


class Browser:
    def __init__(self):
        options = webdriver.ChromeOptions()
        for word in ("headless=new", "no-sandbox", "disable-gpu", "disable-dev-shm-usage", "hide-scrollbars"):
            options.add_argument("--" + word)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
        self.screen()

    def quit(self):
        self.driver.quit()

    def screen(self, width=1280, height=900, scheme="light", scale=1):
        metrics = {"width": width, "height": height, "deviceScaleFactor": scale, "mobile": width < 700}
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", metrics)
        features = [{"name": "prefers-color-scheme", "value": scheme}, {"name": "prefers-reduced-motion", "value": "reduce"}]
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": features})

    def media(self, media, scheme="dark"):
        words = {"media": media, "features": [{"name": "prefers-color-scheme", "value": scheme}]}
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", words)

    def open(self, path):
        self.driver.get("about:blank")
        self.driver.get("file://" + path)

    def all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def texts(self, selector):
        """Texts as they stand in the page, shown or not."""
        return self.run("return [...document.querySelectorAll(arguments[0])].map((node) => node.textContent)", selector)

    def run(self, script, *words):
        return self.driver.execute_script(script, *words)

    def press(self, *keys):
        for key in keys:
            self.driver.switch_to.active_element.send_keys(getattr(Keys, key, key))

    def soon(self, ask):
        """The answer as soon as it is one, else the last within three seconds."""
        end = time.monotonic() + 3
        answer = ask()
        while not answer and time.monotonic() < end:
            time.sleep(0.02)
            answer = ask()
        return answer

    def complaints(self):
        return [entry["message"] for entry in self.driver.get_log("browser")]

    def requests(self):
        """The addresses that were asked for since the last time, but for the page's own file."""
        messages = (json.loads(entry["message"])["message"] for entry in self.driver.get_log("performance"))
        urls = [message["params"]["request"]["url"] for message in messages
                if message["method"] == "Network.requestWillBeSent"]
        return [url for url in urls if not url.startswith(("file:///tmp/", "data:"))]

    def picture(self, path):
        with open(path, "wb") as file:
            file.write(base64.b64decode(self.driver.get_screenshot_as_base64()))
